# Checks of what is written: pages, formats, links. Debian's packages are for Debian's own Python, which need not be the
# first one in the PATH.
find_program(TARVO_DEBIAN_PYTHON NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH REQUIRED)
add_test(NAME docs.guide COMMAND ${TARVO_DEBIAN_PYTHON} ${PROJECT_SOURCE_DIR}/tools/make_guide.py --check)
add_test(NAME docs.formats COMMAND ${TARVO_DEBIAN_PYTHON} ${PROJECT_SOURCE_DIR}/tools/check_formats.py)
add_test(NAME docs.scripts COMMAND ${TARVO_DEBIAN_PYTHON} ${PROJECT_SOURCE_DIR}/tools/make_scripts.py --check)
add_test(NAME docs.beliefs COMMAND ${TARVO_DEBIAN_PYTHON} ${PROJECT_SOURCE_DIR}/tools/make_belief_tables.py --check)
add_test(NAME docs.host_facts COMMAND ${TARVO_DEBIAN_PYTHON} ${PROJECT_SOURCE_DIR}/tools/make_host_check.py --check)
add_test(NAME docs.scenarios COMMAND ${TARVO_DEBIAN_PYTHON} ${PROJECT_SOURCE_DIR}/tools/check_scenarios.py)
add_test(NAME docs.links COMMAND ${TARVO_DEBIAN_PYTHON} ${PROJECT_SOURCE_DIR}/tools/check_docs.py)
# What is said when something cannot be fetched.
add_test(NAME tools.downloads COMMAND bash ${CMAKE_CURRENT_SOURCE_DIR}/tools/downloads_test.sh)
# Which tests ./test leaves out.
add_test(NAME tools.keyed COMMAND bash ${CMAKE_CURRENT_SOURCE_DIR}/tools/keyed_test.sh)
