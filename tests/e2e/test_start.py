"""Starting: with nothing at all, with arguments, without a display, a second time; and ending."""

import os
import subprocess
from pathlib import Path

from lib.case import HubTest, World
from lib.layout import Layout
from lib.screen import SCREEN_SIZE
from lib.waiting import wait_for


class FirstStart(HubTest):
    def test_offline_with_an_empty_home_shows_the_built_in_product(self):
        self.hub.start()
        self.hub.wait_for_card(0, "not downloadable")
        library = self.hub.library()
        self.assertEqual((library.connection(), library.card(1)), ("offline", "no card"))
        self.assertFalse(self.hub.cache.exists())
        made = sorted(str(path.relative_to(self.hub.root)) for path in self.hub.paths_at_rest(self.hub.root))
        self.assertEqual(made, ["Creator", "Creator/Publish Drafts", "Runtime", "Vault"])
        self.assert_no_box()

    def test_the_keyboard_alone_finds_its_way_from_the_start(self):
        self.hub.open()
        self.hub.window.press("Tab", "Tab", "Return")       # the first two tabs
        self.hub.wait_for_card(0, "not downloadable")

    def test_every_file_and_folder_is_private_to_the_user(self):
        self.start_online("zorva-beatpad-1.2.0")
        self.download()
        self.install()
        made = self.hub.paths_at_rest(self.hub.home / ".config") + self.hub.paths_at_rest(self.hub.products)
        shared = [str(path) for path in made if path.stat().st_mode & 0o077 and path.name != "settings.json"
                  and path not in (self.hub.root, self.hub.home / ".config")]
        self.assertEqual(shared, [])

    def test_arguments_change_nothing(self):
        self.open_shop("zorva-daw-13.0.0")
        self.hub.start("--help", "--version", "/S", "https://catalogue.zorva.test/other.json", "-display")
        self.hub.wait_online()
        self.hub.wait_for_card(0, "downloadable")
        self.assertEqual([request.path for request in self.shop.server.requests], ["/manifest.json"])

    def test_a_settings_file_that_is_no_object_gives_the_defaults(self):
        self.hub.root.mkdir(parents=True)
        (self.hub.root / "settings.json").write_text("[1, 2, 3]")
        self.hub.start()
        self.hub.wait_for_card(0, "not downloadable")
        self.assertEqual((self.hub.root / "settings.json").read_text(), "[1, 2, 3]")


# A program without DISPLAY tries display 0, and the socket files of displays outside are visible in the world.
LOCK = Path("/var/tmp/juceAppLock_ZORVA Hub")     # the framework's, of whoever started a Hub first
WITHOUT_SOCKETS = ["unshare", "--mount", "sh", "-c", 'mount -t tmpfs none /tmp/.X11-unix && exec "$0"']


class NoDisplay(HubTest):
    def ends_by_itself(self, environment):
        variables = {key: value for key, value in os.environ.items() if key != "DISPLAY"}
        done = subprocess.run([*WITHOUT_SOCKETS, self.hub.binary], env={**variables, "HOME": str(self.hub.home), **environment},
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=15)
        self.assertIn(done.returncode, range(1, 128), "it should end with an exit code that tells of a failure, not by a signal")
        self.assertRegex(done.stdout.lower(), "display|x server")

    def test_without_a_display_it_says_so_and_leaves(self):
        self.ends_by_itself({})

    def test_with_a_display_that_does_not_exist_it_says_so_and_leaves(self):
        self.ends_by_itself({"DISPLAY": ":4711"})


class SecondStart(HubTest):
    def cover_the_hub(self):
        cover = subprocess.Popen(["xev", "-name", "cover", "-geometry", "1300x800+0+0"], stdout=subprocess.DEVNULL)
        self.addCleanup(cover.wait, 10)
        self.addCleanup(cover.kill)
        window = wait_for(lambda: World.screen.windows("cover"), "the covering window")[0]
        wait_for(lambda: World.screen.active() == window and World.screen.stacking()[-1] == window, "the cover to be on top")
        return window

    def test_brings_the_first_window_forward_and_opens_none(self):
        self.hub.start()
        first = self.hub.window
        self.cover_the_hub()
        self.assertGreaterEqual(self.hub.start_again("--anything"), 0, "the second process should not end by a signal")
        wait_for(lambda: World.screen.stacking()[-1] == first, "the Hub's window to come to the top")
        self.assertEqual(self.hub.windows(), [first])
        self.assertIsNone(self.hub.process.poll())

    def test_gives_the_first_window_the_keyboard(self):
        self.hub.start()
        first = self.hub.window
        self.cover_the_hub()
        self.hub.start_again()
        wait_for(lambda: World.screen.active() == first, "the Hub's window to have the keyboard")

    def test_brings_a_minimised_window_back(self):
        self.hub.start()
        first = self.hub.window
        subprocess.run(["xdotool", "windowminimize", "--sync", first.id], check=True, timeout=10)
        wait_for(lambda: not self.hub.windows(), "the window to be minimised")
        self.hub.start_again()
        wait_for(lambda: self.hub.windows() == [first], "the window to come back")

    def test_a_lock_that_cannot_be_opened_lets_no_second_hub_run(self):
        """Such as one that another user of the machine has made. Root may open every file, but no folder."""
        LOCK.unlink(missing_ok=True)
        LOCK.mkdir()
        self.addCleanup(LOCK.rmdir)
        self.hub.start()
        first = self.hub.window
        self.cover_the_hub()
        self.assertEqual(self.hub.start_again(), 0)
        wait_for(lambda: World.screen.stacking()[-1] == first, "the Hub's window to come to the top")
        self.assertEqual(self.hub.windows(), [first])
        self.assertIsNone(self.hub.process.poll())

    def test_after_a_crash_the_next_start_is_a_first_one(self):
        self.hub.start()
        self.hub.kill()
        self.hub.start()
        self.assertEqual(len(self.hub.windows()), 1)


class MainWindow(HubTest):
    def test_opens_centred_at_its_size_whatever_size_it_had(self):
        self.hub.start()
        self.hub.window.resize(1240, 800)
        wait_for(lambda: self.hub.window.place().width == 1240, "the window to grow")
        self.assertEqual(self.hub.quit(), 0)
        self.hub.start()
        place = self.hub.window.place()
        self.assertEqual((place.width, place.height), (1100, 720))
        left, right, top, bottom = self.hub.window.frame()
        margins = (place.x - left, SCREEN_SIZE[0] - place.x - place.width - right,
                   place.y - top, SCREEN_SIZE[1] - place.y - place.height - bottom)
        self.assertLessEqual(abs(margins[0] - margins[1]), 30, margins)
        self.assertLessEqual(abs(margins[2] - margins[3]), 30, margins)

    def test_cannot_be_made_smaller_than_900_by_600(self):
        """The limit counts the frame that the window manager draws."""
        self.hub.start()
        window = self.hub.window
        left, right, top, bottom = window.frame()
        window.resize(500, 300)
        smallest = (900 - left - right, 600 - top - bottom)
        wait_for(lambda: (window.place().width, window.place().height) == smallest, f"a content of {smallest}")
        self.hub.layout = Layout(*smallest)
        wait_for(lambda: self.hub.library().card(0) == "not downloadable", "the small page to be painted")

    def test_closing_ends_the_process_in_order(self):
        self.hub.start()
        self.assertEqual(self.hub.quit(), 0)
        self.assertEqual(self.hub.windows(), [])
