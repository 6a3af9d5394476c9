# Every source file of the product, layer by layer. PORTABLE files do not include windows.h and are also built
# natively for the sanitizers; WIN32 files need Windows; SDK files see the host's headers.
set(TARVO_COMMON_PORTABLE
    common/guard.cpp
    common/json_text.cpp
    common/logger.cpp
    common/message_box.cpp
    common/text.cpp)
set(TARVO_COMMON_WIN32
    common/activation_context_win32.cpp
    common/message_box_win32.cpp
    common/own_file_win32.cpp
    common/platform_win32.cpp
    common/string_table_win32.cpp
    common/text_win32.cpp)

set(TARVO_HOST_SDK
    host/max_host.cpp
    host/ratio_spinner.cpp)

set(TARVO_SCENE_PORTABLE
    scene/analysis_codes.cpp
    scene/analysis_reader.cpp
    scene/analysis_run.cpp
    scene/camera.cpp
    scene/scene_data.cpp
    scene/scene_file.cpp
    scene/virus_check.cpp)
set(TARVO_SCENE_WIN32
    scene/scene_file_win32.cpp)

set(TARVO_SUBMIT_PORTABLE
    submit/client_reply.cpp
    submit/plugin_config.cpp
    submit/reply_codes.cpp
    submit/scene_archive.cpp
    submit/submit_document.cpp)
set(TARVO_SUBMIT_WIN32
    submit/client_link_win32.cpp
    submit/scene_archive_win32.cpp
    submit/submit_document_win32.cpp)

set(TARVO_DIALOG_PORTABLE
    dialog/number_step.cpp
    dialog/submit_sequence.cpp
    dialog/ui_state.cpp)
set(TARVO_DIALOG_WIN32
    dialog/camera_edit_dialog_win32.cpp
    dialog/camera_table_win32.cpp
    dialog/fields_win32.cpp
    dialog/main_dialog_win32.cpp
    dialog/opening_sequence_win32.cpp)

set(TARVO_PLUGIN_SDK
    plugin/action_table.cpp
    plugin/menu.cpp
    plugin/module_entry.cpp
    plugin/plugin_object.cpp)

set(TARVO_PORTABLE_SOURCES
    ${TARVO_COMMON_PORTABLE} ${TARVO_SCENE_PORTABLE} ${TARVO_SUBMIT_PORTABLE} ${TARVO_DIALOG_PORTABLE})
set(TARVO_WIN32_SOURCES
    ${TARVO_COMMON_WIN32} ${TARVO_SCENE_WIN32} ${TARVO_SUBMIT_WIN32} ${TARVO_DIALOG_WIN32})
set(TARVO_SDK_SOURCES ${TARVO_HOST_SDK} ${TARVO_PLUGIN_SDK})
