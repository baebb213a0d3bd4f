# How everything is compiled and linked: warnings, sanitizers, the linker and the compiler cache.

find_program(KIPPO_CCACHE ccache)
if(KIPPO_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${KIPPO_CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${KIPPO_CCACHE})
endif()

find_program(KIPPO_MOLD mold)
if(KIPPO_MOLD AND EXISTS /usr/libexec/mold)
  add_link_options(-fuse-ld=mold)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_link_options(-B/usr/libexec/mold)
  endif()
endif()

if(KIPPO_SANITIZE)
  add_compile_options(-fsanitize=${KIPPO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${KIPPO_SANITIZE})
endif()
if(KIPPO_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

# Linked by every target of ours and by nothing generated. Whether they are errors is the preset's choice.
add_library(kippo_warnings INTERFACE)
target_compile_options(kippo_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
                                                -Wold-style-cast -Woverloaded-virtual)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # Optimising, GCC 12 sees overlaps in its own std::string that are none (its bug 105651).
  target_compile_options(kippo_warnings INTERFACE $<$<CONFIG:Release>:-Wno-restrict>)
endif()
