# The flash bundle's loader: plain C++ on the toolkit, built on its own so that it builds
# and is tested wherever the toolkit is, also where the Cocoa part is not built.
add_library(flash_loader STATIC ${CMAKE_CURRENT_LIST_DIR}/BundleLoader.cpp)
add_library(XPToolkit::flash_loader ALIAS flash_loader)
target_include_directories(flash_loader PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_LIST_DIR}>)
target_link_libraries(flash_loader PUBLIC toolkit)
