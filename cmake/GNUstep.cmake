# Cocoa for the flash bundle: AppKit itself on Apple systems, GNUstep's AppKit elsewhere.
#
# Sets XP_HAVE_COCOA. Off Apple it is ON only when gnustep-config, the AppKit headers and
# an Objective-C++ front end for the C++ compiler are all there; the project then gains the
# OBJCXX language (so .mm files, and only they, are compiled with -x objective-c++) and the
# INTERFACE target xp_gnustep_gui, which carries GNUstep's flags to whatever links it.
#
# Debian builds GNUstep with gcc and gcc's own libobjc, whose headers only gcc finds: clang
# cannot compile against it, so a clang build goes without the Cocoa parts.

set(XP_HAVE_COCOA OFF)

if(APPLE)
  set(XP_HAVE_COCOA ON)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  find_program(XP_GNUSTEP_CONFIG gnustep-config)
  # Without gobjc++ the driver answers with the bare name instead of a path.
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-prog-name=cc1objplus
                  OUTPUT_VARIABLE _xp_cc1objplus OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(XP_GNUSTEP_CONFIG AND IS_ABSOLUTE "${_xp_cc1objplus}" AND EXISTS "${_xp_cc1objplus}")
    execute_process(COMMAND ${XP_GNUSTEP_CONFIG} --objc-flags
                    OUTPUT_VARIABLE _xp_objc_flags OUTPUT_STRIP_TRAILING_WHITESPACE)
    execute_process(COMMAND ${XP_GNUSTEP_CONFIG} --gui-libs
                    OUTPUT_VARIABLE _xp_gui_libs OUTPUT_STRIP_TRAILING_WHITESPACE)
    separate_arguments(_xp_objc_flags UNIX_COMMAND "${_xp_objc_flags}")
    separate_arguments(_xp_gui_libs UNIX_COMMAND "${_xp_gui_libs}")

    # gnustep-config speaks for GNUstep's own makefiles: dependency files, optimisation and
    # debug level are CMake's business here, and "-I." would mean whatever folder the
    # compiler happens to run in. The header folders become system folders, because the
    # GNUstep headers trip -Wextra (-Wexpansion-to-defined) by the hundred.
    set(_xp_gs_includes "")
    set(_xp_gs_options "")
    foreach(flag IN LISTS _xp_objc_flags)
      if(flag MATCHES "^-I(.+)$")
        if(NOT CMAKE_MATCH_1 STREQUAL "." AND IS_DIRECTORY "${CMAKE_MATCH_1}")
          list(APPEND _xp_gs_includes "${CMAKE_MATCH_1}")
        endif()
      elseif(NOT flag MATCHES "^-(MMD|MP|g[0-9]*|O[0-9s]?|Wall)$")
        list(APPEND _xp_gs_options "${flag}")
      endif()
    endforeach()

    set(_xp_gs_link_dirs "")
    set(_xp_gs_link_libs "")
    set(_xp_gs_link_options "")
    foreach(flag IN LISTS _xp_gui_libs)
      if(flag MATCHES "^-L(.+)$")
        if(IS_DIRECTORY "${CMAKE_MATCH_1}")
          list(APPEND _xp_gs_link_dirs "${CMAKE_MATCH_1}")
        endif()
      elseif(flag MATCHES "^-l(.+)$")
        list(APPEND _xp_gs_link_libs "${CMAKE_MATCH_1}")
      else()
        list(APPEND _xp_gs_link_options "${flag}")
      endif()
    endforeach()

    find_path(XP_GNUSTEP_APPKIT_INCLUDE_DIR AppKit/AppKit.h HINTS ${_xp_gs_includes} NO_DEFAULT_PATH)
    if(XP_GNUSTEP_APPKIT_INCLUDE_DIR)
      set(XP_HAVE_COCOA ON)
    endif()
  endif()
endif()

if(XP_HAVE_COCOA)
  if(NOT APPLE)
    # The same compiler for both languages, so that C++ and Objective-C++ objects agree.
    set(CMAKE_OBJCXX_COMPILER ${CMAKE_CXX_COMPILER})
  endif()
  enable_language(OBJCXX)
endif()

if(XP_HAVE_COCOA AND NOT APPLE)
  add_library(xp_gnustep_gui INTERFACE)
  target_include_directories(xp_gnustep_gui SYSTEM INTERFACE
    $<$<COMPILE_LANGUAGE:OBJCXX>:${_xp_gs_includes}>)
  # g++ 12 reports the block-typed instance variables of the GNUstep classes (an unnamed
  # struct type) with -Wsubobject-linkage wherever the headers are not read as system
  # headers, for instance when another target adds the same folder with -I.
  target_compile_options(xp_gnustep_gui INTERFACE
    $<$<COMPILE_LANGUAGE:OBJCXX>:${_xp_gs_options};-Wno-subobject-linkage>)
  target_link_directories(xp_gnustep_gui INTERFACE ${_xp_gs_link_dirs})
  target_link_options(xp_gnustep_gui INTERFACE ${_xp_gs_link_options})
  target_link_libraries(xp_gnustep_gui INTERFACE ${_xp_gs_link_libs})
endif()

message(STATUS "Cocoa for the flash bundle: ${XP_HAVE_COCOA}")
