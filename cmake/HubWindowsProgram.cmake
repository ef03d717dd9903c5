# hub_add_windows_program (target name): an executable without a console window, called "<name>.exe", that carries the project's version,
# the Hub's icon and its manifest. JUCE's own way leaves the product version out.
function(hub_add_windows_program target name)
  set(HUB_PROGRAM_NAME "${name}")
  string(REPLACE "." "," HUB_VERSION_NUMBERS "${PROJECT_VERSION},0")
  set(resources "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
  configure_file("${CMAKE_SOURCE_DIR}/packaging/windows/program.rc.in" "${resources}" @ONLY)

  add_executable(${target} WIN32 "${resources}")
  set_property(SOURCE "${resources}" APPEND PROPERTY OBJECT_DEPENDS
    "${CMAKE_SOURCE_DIR}/packaging/windows/hub.ico;${CMAKE_SOURCE_DIR}/packaging/windows/hub.manifest")
  set_target_properties(${target} PROPERTIES OUTPUT_NAME "${name}"
    RUNTIME_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/${target}_artefacts/$<CONFIG>")

  if(MSVC)
    target_link_options(${target} PRIVATE /MANIFEST:NO)    # ours is in the resources
  endif()
endfunction()
