# What `cmake --install` and `cpack` give: libraries, headers, program, package files.
include(CMakePackageConfigHelpers)

set(private_libraries ${CMAKE_INSTALL_LIBDIR}/velmora)
set(package_files ${CMAKE_INSTALL_LIBDIR}/cmake/Velmora)

set_target_properties(velmora_platform PROPERTIES EXPORT_NAME Platform
  INSTALL_RPATH "$ORIGIN/velmora")
set_target_properties(velmora_component PROPERTIES EXPORT_NAME Component INSTALL_RPATH "$ORIGIN"
  SOVERSION ${PROJECT_VERSION_MAJOR} VERSION ${PROJECT_VERSION})
set_target_properties(velmora_cli PROPERTIES
  INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}:$ORIGIN/../${private_libraries}")

install(TARGETS velmora_platform velmora_component velmora_cli EXPORT VelmoraTargets)
install(DIRECTORY include/velmora DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_BINARY_DIR}/messages/ DESTINATION ${CMAKE_INSTALL_DATADIR}/velmora/messages
  FILES_MATCHING PATTERN "*.mo")
install(DIRECTORY schema DESTINATION ${CMAKE_INSTALL_DATADIR}/velmora)
install(FILES docs/velmora.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES resources/completion/velmora DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)

# The engine comes along unless it is the system's own.
get_target_property(engine DuckDB::DuckDB IMPORTED_LOCATION)
file(REAL_PATH ${engine} engine)
if(NOT engine MATCHES "^/usr/lib")
  install(PROGRAMS ${engine} DESTINATION ${private_libraries} RENAME libduckdb.so)
endif()

install(EXPORT VelmoraTargets NAMESPACE Velmora:: DESTINATION ${package_files})
configure_package_config_file(cmake/VelmoraConfig.cmake.in
  ${PROJECT_BINARY_DIR}/package/VelmoraConfig.cmake INSTALL_DESTINATION ${package_files})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/VelmoraConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
# A folder that is moved, or a package made for another prefix, stays right.
file(RELATIVE_PATH prefix_from_pc /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/velmora.pc.in ${PROJECT_BINARY_DIR}/package/velmora.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/package/VelmoraConfig.cmake
  ${PROJECT_BINARY_DIR}/package/VelmoraConfigVersion.cmake DESTINATION ${package_files})
install(FILES ${PROJECT_BINARY_DIR}/package/velmora.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_CONTACT "The developers of Velmora")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS tdsodbc)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
get_filename_component(engine_folder ${engine} DIRECTORY)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY} ${engine_folder})
include(CPack)
