# Shared build rules: one static library per subsystem, with the portable
# sources of its folder plus the twin for this platform (win32/ or posix/).

set(TW_WARNINGS -Wall -Wextra -Werror -Wno-unused-parameter)

function(tw_warnings target)
  target_compile_options(${target} PRIVATE ${TW_WARNINGS})
endfunction()

function(tw_add_subsystem name)
  cmake_parse_arguments(ARG "" "" "DEPENDS;LIBS" ${ARGN})
  file(GLOB _portable CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  file(GLOB _platform CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${TW_PLATFORM}/*.cpp)
  add_library(${name} STATIC ${_portable} ${_platform})
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>
    $<INSTALL_INTERFACE:include>)
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} ${ARG_LIBS})
  tw_warnings(${name})
  install(TARGETS ${name} EXPORT twveerbackglfTargets ARCHIVE DESTINATION lib)
  # The headers of this platform's folder go too: the portable ones include them.
  if(WIN32)
    set(_other_platform posix)
  else()
    set(_other_platform win32)
  endif()
  install(DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/ DESTINATION include/${name}
          FILES_MATCHING PATTERN "*.h" PATTERN "${_other_platform}" EXCLUDE
          REGEX "${CMAKE_CURRENT_SOURCE_DIR}/options$" EXCLUDE)
endfunction()

# Windows programs carry no MinGW runtime DLLs.
function(tw_static_runtime target)
  if(MINGW)
    target_link_options(${target} PRIVATE -static -static-libgcc -static-libstdc++)
  endif()
endfunction()
