# The Debian package: `cpack -G DEB` in a release build folder whose prefix is /usr.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quovane-developer)
set(CPACK_PACKAGE_VENDOR Quovane)
set(CPACK_PACKAGE_CONTACT "Quovane Developer team <developer@quovane.example>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "write, link, build and pack Quovane book sets")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"The authoring tool for the documentation projects of a Quovane server.
Authors create, copy, merge, rank and delete book sets, import and edit pages,
keep global pages, categories and quick navigation, check links between books,
build and pack. A help viewer, an index manager and the command line qvdev come
with it.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION text)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://quovane.example/developer)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "fonts-wqy-microhei")
include(CPack)
