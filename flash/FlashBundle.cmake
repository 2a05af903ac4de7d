# The flash bundle, Vn7_KestCocoaFlashBundle.bundle, laid out as on macOS: one loadable
# module with the flash dialog, the alerts, the loader and the whole toolkit, and the nibs
# and the logo in its resources. It exports the plain entry points, the toolkit's functions
# and its settings and tables, and nothing else. It does not carry the host: the host
# operations (FM_...) stay undefined and come from whatever loads the bundle, the host's
# plug-in framework in the main plug-in, the in-memory host in our programs (which must
# export it: ENABLE_EXPORTS).
set(XP_FLASH_BUNDLE_NAME Vn7_KestCocoaFlashBundle)
set(XP_FLASH_BUNDLE_IDENTIFIER com.varn.kest.cocoaflash)
set(XP_FLASH_BUNDLE_DIR ${PROJECT_BINARY_DIR}/${XP_FLASH_BUNDLE_NAME}.bundle)

# Every object of the loader, the Cocoa part and the toolkit, whether the bundle calls it
# or not: the main plug-in does.
add_library(flash_bundle MODULE $<TARGET_OBJECTS:flash_loader>)
target_link_libraries(flash_bundle PRIVATE "$<LINK_LIBRARY:WHOLE_ARCHIVE,flash,toolkit>")
# flash and flash_loader link the toolkit as well; here it is linked whole everywhere.
set_property(TARGET flash_bundle PROPERTY LINK_LIBRARY_OVERRIDE_toolkit WHOLE_ARCHIVE)
add_dependencies(flash_bundle flash_resources)
set_target_properties(flash_bundle PROPERTIES
  OUTPUT_NAME ${XP_FLASH_BUNDLE_NAME}
  MACOSX_BUNDLE_GUI_IDENTIFIER ${XP_FLASH_BUNDLE_IDENTIFIER}
  MACOSX_BUNDLE_BUNDLE_NAME ${XP_FLASH_BUNDLE_NAME}
  MACOSX_BUNDLE_BUNDLE_VERSION 1228
  MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION})

if(APPLE)
  # Architectures come from CMAKE_OSX_ARCHITECTURES; the frameworks replace platform/.
  set_target_properties(flash_bundle PROPERTIES
    BUNDLE TRUE
    BUNDLE_EXTENSION bundle
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}
    MACOSX_BUNDLE_INFO_PLIST ${CMAKE_CURRENT_LIST_DIR}/Info.plist.in
    LINK_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/FlashBundle.exp)
  target_link_libraries(flash_bundle PRIVATE "-framework AppKit" "-framework Foundation" "-framework CoreFoundation"
                                             "-framework CoreServices" "-framework Carbon" "-framework AudioToolbox")
  # The host operations are found in the host application once it has loaded the bundle.
  target_link_options(flash_bundle PRIVATE -Wl,-undefined,dynamic_lookup
                      -Wl,-exported_symbols_list,${CMAKE_CURRENT_LIST_DIR}/FlashBundle.exp)
  set(_xp_bundle_resources $<TARGET_BUNDLE_CONTENT_DIR:flash_bundle>/Resources)
else()
  set(_xp_bundle_contents ${XP_FLASH_BUNDLE_DIR}/Contents)
  set_target_properties(flash_bundle PROPERTIES
    PREFIX ""
    SUFFIX ""
    LIBRARY_OUTPUT_DIRECTORY ${_xp_bundle_contents}/MacOS
    LINK_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/FlashBundle.map)
  target_link_options(flash_bundle PRIVATE -Wl,--version-script=${CMAKE_CURRENT_LIST_DIR}/FlashBundle.map)
  # The same names CMake gives the template on macOS.
  set(MACOSX_BUNDLE_EXECUTABLE_NAME ${XP_FLASH_BUNDLE_NAME})
  foreach(key GUI_IDENTIFIER BUNDLE_NAME BUNDLE_VERSION SHORT_VERSION_STRING)
    get_target_property(MACOSX_BUNDLE_${key} flash_bundle MACOSX_BUNDLE_${key})
  endforeach()
  configure_file(${CMAKE_CURRENT_LIST_DIR}/Info.plist.in ${_xp_bundle_contents}/Info.plist)
  set(_xp_bundle_resources ${_xp_bundle_contents}/Resources)
endif()

add_custom_command(TARGET flash_bundle POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${XP_RESOURCES_DIR} ${_xp_bundle_resources})
