# HUB_SANITIZE: empty, "address,undefined" or "thread". Applies to JUCE and to our own code alike.
set(HUB_SANITIZE "" CACHE STRING "empty, 'address,undefined' or 'thread'")

if(HUB_SANITIZE)
  add_compile_options(-fsanitize=${HUB_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${HUB_SANITIZE})
  if(HUB_SANITIZE MATCHES "undefined")
    # JUCE reads through a null vptr in a few harmless places; our own code is still checked for all the rest.
    add_compile_options(-fno-sanitize=vptr,function -fno-sanitize-recover=undefined)
  endif()
endif()

if(HUB_BUILD_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
