import os, subprocess, sys, shutil
from lib.case import HubTest
class QuitLoop(HubTest):
    def test_loop(self):
        self.open_shop("zorva-daw-13.0.0")
        for i in range(150):
            shutil.rmtree(self.hub.home); self.hub.home.mkdir(); self.open_shop("zorva-daw-13.0.0")
            self.hub.start(); self.hub.wait_online() if i % 2 else None
            try: self.hub.quit()
            except subprocess.TimeoutExpired:
                print(i, 'HUNG'); print(subprocess.run(['gdb','-p',str(self.hub.process.pid),'-batch','-ex','thread apply all bt 12'],stdout=subprocess.PIPE,stderr=subprocess.STDOUT,text=True).stdout[-6000:], flush=True)
                w=self.hub.window; w.close()
                try: print('second close', self.hub.process.wait(5))
                except subprocess.TimeoutExpired: print('second close did not help'); 
                break
        print('loops', i+1)
