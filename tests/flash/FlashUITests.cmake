# The flash bundle's Cocoa part: its plain entries, and its dialogs and alerts in real X
# windows on a private Xvfb display, clicked with xdotool and photographed with ImageMagick.
# Included from tests/CMakeLists.txt when the flash bundle is built off Apple systems.

add_executable(flash_wrapper_tests flash/FlashWrappersTest.cpp)
target_link_libraries(flash_wrapper_tests PRIVATE flash memhost GTest::gtest GTest::gtest_main util)
target_include_directories(flash_wrapper_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
gtest_discover_tests(flash_wrapper_tests DISCOVERY_TIMEOUT 60)

add_executable(flash_ui_tests
  flash/UIHarness.mm
  flash/DialogProbe.mm
  flash/FlashDialogUITest.mm
  flash/MessageAlertsUITest.mm
  flash/NoDisplayTest.mm
)
target_link_libraries(flash_ui_tests PRIVATE flash memhost GTest::gtest)
target_include_directories(flash_ui_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_definitions(flash_ui_tests PRIVATE
  XP_RESOURCES_DIR="${XP_RESOURCES_DIR}"
  FLASH_UI_DRIVER="${CMAKE_CURRENT_SOURCE_DIR}/flash/flash-ui.sh")
add_dependencies(flash_ui_tests flash_resources)

# One run holds every UI test: they share one display and one NSApp, as the plug-in's
# dialogs share the host's. The screenshots land in the build tree.
add_test(NAME flash_ui
  COMMAND bash ${CMAKE_CURRENT_SOURCE_DIR}/flash/run-under-xvfb.sh
          bash ${CMAKE_CURRENT_SOURCE_DIR}/flash/flash-ui.sh run
          $<TARGET_FILE:flash_ui_tests> --shots=${CMAKE_CURRENT_BINARY_DIR}/flash-ui-shots)
set_tests_properties(flash_ui PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 600
                                         ENVIRONMENT "XP_XVFB_TIMEOUT=540")
