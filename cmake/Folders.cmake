# What most sources include. Precompiled it halves the time of a build; what each file needs it still includes,
# which the linter checks without it.
set(KALVIO_PRECOMPILED <algorithm> <array> <atomic> <charconv> <cmath> <cstdint> <functional> <map> <memory> <mutex>
  <optional> <span> <string> <string_view> <utility> <variant> <vector>)

# One object library per source folder, so that a folder can be built and checked alone. Folders that are
# compiled with the same definitions share the precompiled headers of the first of them.
function(kalvio_object_folder folder first)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_library(kalvio_${folder} OBJECT ${sources})
  target_include_directories(kalvio_${folder} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(kalvio_${folder} PUBLIC Threads::Threads)
  if(NOT folder STREQUAL first)
    target_precompile_headers(kalvio_${folder} REUSE_FROM kalvio_${first})
  else()
    target_precompile_headers(kalvio_${folder} PRIVATE ${KALVIO_PRECOMPILED})
  endif()
endfunction()

# Gives a target its public headers: the include path for its users and the files to install.
function(kalvio_public_headers target)
  list(TRANSFORM ARGN PREPEND ${PROJECT_SOURCE_DIR}/src/ OUTPUT_VARIABLE files)
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/src FILES ${files})
  target_compile_features(${target} PUBLIC cxx_std_20)
endfunction()

# kalvio_FOLDER_archive, for other projects kalvio::FOLDER: a static library of a folder's objects.
function(kalvio_archive folder)
  kalvio_object_folder(${folder} simulator)
  set(archive kalvio_${folder}_archive)
  add_library(${archive} STATIC $<TARGET_OBJECTS:kalvio_${folder}>)
  add_library(kalvio::${folder} ALIAS ${archive})
  set_target_properties(${archive} PROPERTIES OUTPUT_NAME kalvio_${folder} EXPORT_NAME ${folder})
  kalvio_public_headers(${archive} ${ARGN})
endfunction()
