# Writes brindle/Version.h from the version of the project.
set(brindle_version ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.${PROJECT_VERSION_PATCH})
set(brindle_generated_dir ${PROJECT_BINARY_DIR}/generated)
configure_file(cmake/Version.h.in ${brindle_generated_dir}/brindle/Version.h @ONLY)
