# The emulated evaluation boards, for the tests and the benchmarks: bridge_device, and emulated_usb where
# umockdev is (UMOCKDEV_FOUND).
include_guard(GLOBAL)
find_package(PkgConfig REQUIRED)
pkg_check_modules(UMOCKDEV IMPORTED_TARGET GLOBAL umockdev-1.0)
pkg_check_modules(LIBUSB REQUIRED IMPORTED_TARGET GLOBAL libusb-1.0)
set(here ${CMAKE_CURRENT_LIST_DIR})

# The evaluation board as a USB device, for every rig that emulates one.
add_library(bridge_device STATIC ${here}/bridge_device.cpp)
target_include_directories(bridge_device PUBLIC ${here}/..)
target_link_libraries(bridge_device PUBLIC boards_simulated PRIVATE varzelin_warnings)
# GCC 12, optimizing, takes a vector's growth for a write behind its old end.
target_compile_options(bridge_device PRIVATE "$<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds;-Wno-stringop-overread>")

if(UMOCKDEV_FOUND)
  add_library(emulated_usb STATIC ${here}/emulated_board.cpp ${here}/emulated_usb.cpp)
  target_link_libraries(emulated_usb PUBLIC bridge_device PkgConfig::UMOCKDEV PRIVATE varzelin_warnings)
  add_executable(with-emulated-boards ${here}/with_emulated_boards.cpp)
  target_link_libraries(with-emulated-boards PRIVATE emulated_usb varzelin_warnings)
endif()
