# The Debian package. `packaging/deb` builds it.

# packages_of(SECTION OUT): the packages of a section of `packages`, as a Debian relation.
function(packages_of section out)
  file(READ ${CMAKE_CURRENT_SOURCE_DIR}/packages text)
  string(REGEX REPLACE "#[^\n]*" "" text "${text}")
  string(REGEX MATCH "\\[${section}\\]([^[]*)" found "${text}")
  string(STRIP "${CMAKE_MATCH_1}" names)
  string(REGEX REPLACE "[ \n]+" ", " relation "${names}")
  set(${out} "${relation}" PARENT_SCOPE)
endfunction()

set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS packages)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kippo)
set(CPACK_PACKAGE_VENDOR "The Kippo authors")
set(CPACK_PACKAGE_CONTACT "The Kippo authors")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "shows which coding agents work, need you or are done")
set(CPACK_PACKAGE_DESCRIPTION
"Kippo sits at the top centre of the screen and shows at a glance which coding
agents are working, which need the user and which are done: Claude Code, Codex,
Cursor Agent, Gemini CLI, opencode and Aider. It starts small, like a laptop's
camera notch, widens for a moment when a session needs the user or finishes,
and opens into the list under the pointer. The same list and more is there in
the terminal.")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# What lintian need not tell; only the package has it.
set(CPACK_INSTALLED_DIRECTORIES ${CMAKE_CURRENT_SOURCE_DIR}/debian/lintian usr/share/lintian/overrides)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${KIPPO_WEB}")
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
packages_of(run CPACK_DEBIAN_PACKAGE_DEPENDS)
packages_of(recommended CPACK_DEBIAN_PACKAGE_RECOMMENDS)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA
  ${CMAKE_CURRENT_SOURCE_DIR}/debian/prerm ${CMAKE_CURRENT_SOURCE_DIR}/debian/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
