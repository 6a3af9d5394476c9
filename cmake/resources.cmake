# The module's resources, for each folder that builds them: the resource compiler does not tell what a script includes.
file(GLOB TARVO_RESOURCE_PARTS CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/resources/*.rc ${PROJECT_SOURCE_DIR}/resources/*.h
    ${PROJECT_SOURCE_DIR}/resources/*.manifest)
set_source_files_properties(${PROJECT_SOURCE_DIR}/resources/tarvo_rendering.rc PROPERTIES
    OBJECT_DEPENDS "${TARVO_RESOURCE_PARTS}")
