# The Debian package: the program under a name without a blank, and what a desktop wants to know about it. It has no scripts:
# nothing of ours runs while it is installed or removed.
include(GNUInstallDirs)
set(hub_generated "${CMAKE_BINARY_DIR}/packaging")
file(MAKE_DIRECTORY "${hub_generated}")

# ---- documentation, in the form in which Debian keeps it --------------------------------------------
foreach(document changelog zorva-hub.1)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${hub_packaging}/linux/${document}")
  execute_process(COMMAND gzip -9nc "${hub_packaging}/linux/${document}" OUTPUT_FILE "${hub_generated}/${document}.gz"
                  COMMAND_ERROR_IS_FATAL ANY)
endforeach()

# A stanza's text is indented by a blank, and an empty line is a dot.
file(READ "${CMAKE_SOURCE_DIR}/LICENSE" HUB_LICENSE_TEXT)
string(REGEX REPLACE "\n+$" "" HUB_LICENSE_TEXT "${HUB_LICENSE_TEXT}")
string(REPLACE "\n" "\n " HUB_LICENSE_TEXT " ${HUB_LICENSE_TEXT}")
string(REGEX REPLACE "\n \n" "\n .\n" HUB_LICENSE_TEXT "${HUB_LICENSE_TEXT}")
string(REGEX REPLACE "\n \n" "\n .\n" HUB_LICENSE_TEXT "${HUB_LICENSE_TEXT}")
configure_file("${hub_packaging}/linux/copyright.in" "${hub_generated}/copyright" @ONLY)

# A writable table of addresses would be of use to nobody but an attacker.
target_link_options(ZorvaHub PRIVATE LINKER:-z,relro,-z,now)

# ---- files --------------------------------------------------------------------------------------------
install(TARGETS ZorvaHub RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(CODE [[
  set(folder "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/bin")
  file(RENAME "${folder}/ZORVA Hub" "${folder}/zorva-hub")
]])
install(FILES "${hub_packaging}/linux/com.zorva.hub.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES "${hub_packaging}/linux/com.zorva.hub.metainfo.xml" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
install(FILES "${hub_generated}/changelog.gz" "${hub_generated}/copyright" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/zorva-hub")
install(FILES "${hub_generated}/zorva-hub.1.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")

foreach(size 16 22 24 32 48 64 128 256)
  install(FILES "${hub_packaging}/icons/${size}.png" RENAME com.zorva.hub.png
    DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps")
endforeach()
install(FILES "${CMAKE_SOURCE_DIR}/assets/ZorvaAppIcon.png" RENAME com.zorva.hub.png
  DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/512x512/apps")

# ---- the package ----------------------------------------------------------------------------------------
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The X libraries are loaded by name when the program starts, so the linker's list does not tell of them.
set(CPACK_DEBIAN_PACKAGE_DEPENDS
  "libx11-6, libxext6, libxrender1, libxrandr2, libxinerama1, libxcursor1, ca-certificates")
# Links and folders are opened by xdg-open, files chosen with zenity or kdialog, and the AI key lies in a secret store.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, gnome-keyring | keepassxc | kwalletmanager, zenity | kdialog")
