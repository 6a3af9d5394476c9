; English texts of the setup.
!define LINK_NAME_EN "Tarvo Rendering Diagnostics"
!define GUIDE_NAME_EN "Tarvo Rendering Guide"
!define L ${LANG_ENGLISH}
LangString LINK_NAME ${L} "${LINK_NAME_EN}"
LangString LINK_HINT ${L} "Looks through the installation and gathers what support needs"
LangString GUIDE_NAME ${L} "${GUIDE_NAME_EN}"
LangString GUIDE_HINT ${L} "First submission, every field, every message with its cure, the logs"
LangString GUIDE_LANGUAGE ${L} "en"
!ifdef REHEARSAL
    LangString TEXT_WELCOME_TITLE ${L} "A rehearsal: not for 3ds Max"
    !define WELCOME_NOTE "This plugin is built against a stand-in of 3ds Max. 3ds Max cannot load it. It serves to try the setup.$\r$\n$\r$\n"
    LangString TEXT_FINISH_TITLE ${L} "The rehearsal is installed"
    !define FINISH_NOTE "3ds Max cannot load this plugin. Remove it before you install a release.$\r$\n$\r$\n"
!else
    LangString TEXT_WELCOME_TITLE ${L} "Tarvo Rendering for 3ds Max 2019"
    !define WELCOME_NOTE ""
    LangString TEXT_FINISH_TITLE ${L} "Tarvo Rendering is installed"
    !define FINISH_NOTE "It appears in the menu of 3ds Max 2019 at its next start.$\r$\n$\r$\n"
!endif
LangString TEXT_REHEARSAL ${L} "This setup brings a plugin that is built against a stand-in of 3ds Max. 3ds Max cannot load it, so this is no installation. Nothing has been changed.$\r$\n$\r$\nUse a setup without $\"rehearsal$\" in its name. To try this one all the same, start it with /REHEARSAL."
LangString TEXT_NO_HOST ${L} "3ds Max 2019 was not found on this computer. Tarvo Rendering works with no other version.$\r$\n$\r$\nYou can install it all the same; it appears in the menu once 3ds Max 2019 is there."
LangString TEXT_WELCOME ${L} "${WELCOME_NOTE}This installs Tarvo Rendering ${VERSION} for everyone who uses this computer. The places are fixed:$\r$\n$\r$\nthe plugin$\r$\n${PACKAGE_FOLDER}$\r$\n$\r$\nits scripts, 7-Zip, documents and logs$\r$\n${DATA_FOLDER}$\r$\n$\r$\nPlease close 3ds Max first. Settings, logs and documents of an earlier version are kept."
LangString TEXT_FINISH ${L} "${FINISH_NOTE}Jobs go to the desktop client at the address in$\r$\n${INI_FILE}$\r$\n$\r$\nIf something does not work, choose $\"${LINK_NAME_EN}$\" in the start menu. The guide is there too."
LangString TEXT_NO_RIGHTS ${L} "Administrator rights are needed to install or remove Tarvo Rendering. Please start the program as an administrator."
LangString TEXT_IN_USE ${L} "A file of Tarvo Rendering is in use. Please close 3ds Max and press Retry. Nothing has been changed yet."
LangString TEXT_IN_THE_WAY ${L} "Windows would start this file in place of 7-Zip whenever a scene is packed, because of its name and place. It does not belong to Tarvo Rendering, and any user of this computer may have put it there.$\r$\n$\r$\nAbort: stop here; nothing has been changed.$\r$\nRetry: look again, after you have moved or deleted it.$\r$\nIgnore: install all the same. Do this only if you know the file."
LangString TEXT_FAILED ${L} "Tarvo Rendering could not be installed completely. Free some disk space, close programs that may hold its files, and start the setup again."
LangString TEXT_RIGHTS_NOT_SET ${L} "The rights on a folder of Tarvo Rendering could not be set. Without them other users could change its programs, so the setup has stopped."
LangString TEXT_BAD_OPTION ${L} "The setup does not understand one of its options. They are explained in INSTALL.txt."
LangString TEXT_LINK ${L} "A folder of Tarvo Rendering is a link to another place. Any user of this computer may have put it there, so it is not followed. Please delete the link (not what it leads to) and start again."
LangString TEXT_UNINSTALL_TITLE ${L} "Remove Tarvo Rendering"
LangString TEXT_UNINSTALL_SUBTITLE ${L} "The plugin is removed for everyone who uses this computer."
LangString TEXT_UNINSTALL ${L} "The plugin, its scripts, 7-Zip and the start menu entry are removed. Please close 3ds Max first.$\r$\n$\r$\nSettings, logs, submitted documents and packed scenes stay in$\r$\n${DATA_FOLDER}$\r$\nunless you tick the box."
LangString TEXT_PURGE ${L} "&Also delete settings, logs, documents and packed scenes"
!undef L
!undef WELCOME_NOTE
!undef FINISH_NOTE
