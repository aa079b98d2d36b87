# One object library per source folder, so that a folder can be built and checked alone.
function(kalvio_object_folder folder)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_library(kalvio_${folder} OBJECT ${sources})
  target_include_directories(kalvio_${folder} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_compile_definitions(kalvio_${folder} PRIVATE KALVIO_BUILDING_LIBRARY)
  target_link_libraries(kalvio_${folder} PUBLIC Threads::Threads)
  # Precompiled standard headers halve the time of a build; what each file needs it still includes, which
  # the linter checks without them.
  if(TARGET kalvio_platform AND NOT folder STREQUAL "platform")
    target_precompile_headers(kalvio_${folder} REUSE_FROM kalvio_platform)
  else()
    target_precompile_headers(kalvio_${folder} PRIVATE <algorithm> <array> <atomic> <cmath> <cstdint> <functional>
      <map> <memory> <mutex> <optional> <span> <string> <string_view> <utility> <variant> <vector>)
  endif()
endfunction()
