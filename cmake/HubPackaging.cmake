# What an installed Hub consists of, and the packages that CPack makes of it: scripts/package.sh runs it.
if(NOT HUB_BUILD_APP)
  return()
endif()

set(CPACK_PACKAGE_NAME "zorva-hub")
set(CPACK_PACKAGE_VENDOR "The ZORVA Team")
set(CPACK_PACKAGE_CONTACT "The ZORVA Team <hello@zorva.example>")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://www.zorva.example/")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "download, verify and install music software")
set(CPACK_PACKAGE_DESCRIPTION
"ZORVA Hub is the companion of the ZORVA DAW. It shows what there is for it,
downloads each installer once into a local Vault, proves that it is what was
published, and installs and reinstalls from there with no network.
.
If the power goes or the disk fills in the middle, what was there still is, or
the next start brings it back. Nothing runs while the window is closed.")
set(CPACK_RESOURCE_FILE_LICENSE "${CMAKE_SOURCE_DIR}/LICENSE")
set(CPACK_STRIP_FILES ON)
set(CPACK_THREADS 0)

set(hub_packaging "${CMAKE_SOURCE_DIR}/packaging")

if(WIN32)
  include(HubPackagingWindows)
else()
  include(HubPackagingDebian)
endif()

include(CPack)
