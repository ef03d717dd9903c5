# The Windows installer: NSIS with a script of our own, packaging/windows/NSIS.template.in, which CPack finds by its name.
list(APPEND CMAKE_MODULE_PATH "${hub_packaging}/windows")

install(TARGETS ZorvaHub RUNTIME DESTINATION .)
install(FILES "${CMAKE_SOURCE_DIR}/LICENSE" RENAME LICENSE.txt DESTINATION .)

set(CPACK_GENERATOR NSIS)
set(CPACK_PACKAGE_FILE_NAME "zorva-hub-${PROJECT_VERSION}-windows-x64-setup")
set(CPACK_PACKAGE_INSTALL_DIRECTORY "ZORVA Hub")
set(CPACK_HUB_INSTALLER_ICON "${hub_packaging}/windows/hub.ico")    # a name of our own: CPACK_ makes CPack see it
