# One set of compiler settings for all that is ours: target tsRtm_options, linked privately.
option(TSRTM_WERROR "Treat warnings as errors" ${PROJECT_IS_TOP_LEVEL})
set(TSRTM_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize takes them, e.g. address,undefined")

add_library(tsRtm_options INTERFACE)
target_compile_features(tsRtm_options INTERFACE cxx_std_20)
target_compile_options(tsRtm_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>  # GCC 12 sees overlaps in std::string that are none
  -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<BOOL:${TSRTM_WERROR}>:-Werror>)

# Precompiled where tests are built; what people build from is read as it stands, so that an include that is missing
# does not hide.
set(TSRTM_COMMON_HEADERS <algorithm> <array> <chrono> <functional> <limits> <map> <memory> <optional> <span> <string>
  <string_view> <unordered_map> <utility> <variant> <vector>)
if(NOT TSRTM_BUILD_TESTS)
  set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()
find_program(TSRTM_CCACHE ccache)
if(TSRTM_CCACHE AND PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # It takes precompiled headers only where it is told that they are meant.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${TSRTM_CCACHE})
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endif()
if(TSRTM_SANITIZE)
  add_compile_options(-fsanitize=${TSRTM_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${TSRTM_SANITIZE})
endif()
