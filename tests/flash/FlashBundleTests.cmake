# The flash bundle's loader on real bundles, and the built bundle itself. Each fixture
# module is the executable of another kind of flash bundle: current, too old, without the
# version function, without the dialog entry.
function(add_flash_fixture name)
  add_library(${name} MODULE ${CMAKE_CURRENT_LIST_DIR}/fixtures/FlashBundleFixture.cpp)
  target_compile_definitions(${name} PRIVATE ${ARGN})
endfunction()
add_flash_fixture(flash_fixture_1228 FIXTURE_VERSION=1228 FIXTURE_WITH_DIALOG)
add_flash_fixture(flash_fixture_1227 FIXTURE_VERSION=1227 FIXTURE_WITH_DIALOG)
add_flash_fixture(flash_fixture_no_version FIXTURE_WITH_DIALOG)
add_flash_fixture(flash_fixture_no_dialog FIXTURE_VERSION=1228)

# The loader draws on toolkit code that needs the host operations, so it comes first on the
# link line, before the toolkit and the in-memory host.
add_executable(loader_tests flash/BundleLoaderTest.cpp)
target_link_libraries(loader_tests PRIVATE flash_loader toolkit memhost GTest::gtest GTest::gtest_main)
target_include_directories(loader_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
gtest_discover_tests(loader_tests DISCOVERY_TIMEOUT 60)
target_compile_definitions(loader_tests PRIVATE
  FIXTURE_1228="$<TARGET_FILE:flash_fixture_1228>"
  FIXTURE_1227="$<TARGET_FILE:flash_fixture_1227>"
  FIXTURE_NO_VERSION="$<TARGET_FILE:flash_fixture_no_version>"
  FIXTURE_NO_DIALOG="$<TARGET_FILE:flash_fixture_no_dialog>")
add_dependencies(loader_tests flash_fixture_1228 flash_fixture_1227 flash_fixture_no_version flash_fixture_no_dialog)

if(XP_BUILD_FLASH AND NOT APPLE)
  # The built bundle, loaded as the main plug-in loads it: it takes every host operation
  # from the program, which therefore carries and exports the whole in-memory host.
  set_target_properties(loader_tests PROPERTIES ENABLE_EXPORTS ON LINK_LIBRARY_OVERRIDE_memhost WHOLE_ARCHIVE)
  target_compile_definitions(loader_tests PRIVATE FLASH_BUNDLE="${XP_FLASH_BUNDLE_DIR}")
  add_dependencies(loader_tests flash_bundle)

  add_test(NAME flash_bundle_exports
    COMMAND bash ${CMAKE_CURRENT_LIST_DIR}/exported_symbols_test.sh $<TARGET_FILE:flash_bundle>
            $<TARGET_FILE:toolkit> $<TARGET_FILE:flash> $<TARGET_FILE:flash_loader>)
endif()
