; Simplified Chinese texts of the setup.
!define LINK_NAME_ZH "Tarvo Rendering 诊断"
!define GUIDE_NAME_ZH "Tarvo Rendering 用户指南"
!define L ${LANG_SIMPCHINESE}
LangString LINK_NAME ${L} "${LINK_NAME_ZH}"
LangString LINK_HINT ${L} "检查安装情况，并收集技术支持所需的信息"
LangString GUIDE_NAME ${L} "${GUIDE_NAME_ZH}"
LangString GUIDE_HINT ${L} "首次提交、每个字段、每条消息及其处理方法、日志"
LangString GUIDE_LANGUAGE ${L} "zh"
!ifdef REHEARSAL
    LangString TEXT_WELCOME_TITLE ${L} "演练版：不能用于 3ds Max"
    !define WELCOME_NOTE "此插件是针对 3ds Max 的替代程序生成的，3ds Max 无法加载它。它只用于试用安装程序。$\r$\n$\r$\n"
    LangString TEXT_FINISH_TITLE ${L} "演练版已安装"
    !define FINISH_NOTE "3ds Max 无法加载此插件。安装正式版之前，请先将其删除。$\r$\n$\r$\n"
!else
    LangString TEXT_WELCOME_TITLE ${L} "Tarvo Rendering（用于 3ds Max 2019）"
    !define WELCOME_NOTE ""
    LangString TEXT_FINISH_TITLE ${L} "Tarvo Rendering 已安装"
    !define FINISH_NOTE "下次启动 3ds Max 2019 时，菜单中会出现 Tarvo Rendering。$\r$\n$\r$\n"
!endif
LangString TEXT_REHEARSAL ${L} "此安装程序中的插件是针对 3ds Max 的替代程序生成的，3ds Max 无法加载它，因此这不是真正的安装。未进行任何更改。$\r$\n$\r$\n请使用名称中不含“rehearsal”的安装程序。如仍要试用此安装程序，请加上 /REHEARSAL 启动。"
LangString TEXT_NO_HOST ${L} "在此计算机上未找到 3ds Max 2019。Tarvo Rendering 不能用于其他版本。$\r$\n$\r$\n您仍然可以安装；安装 3ds Max 2019 之后，菜单中会出现 Tarvo Rendering。"
LangString TEXT_WELCOME ${L} "${WELCOME_NOTE}此程序将为此计算机上的所有用户安装 Tarvo Rendering ${VERSION}。安装位置是固定的：$\r$\n$\r$\n插件$\r$\n${PACKAGE_FOLDER}$\r$\n$\r$\n脚本、7-Zip、文档和日志$\r$\n${DATA_FOLDER}$\r$\n$\r$\n请先关闭 3ds Max。早期版本的设置、日志和文档将会保留。"
LangString TEXT_FINISH ${L} "${FINISH_NOTE}任务将发送到以下文件中所设地址的桌面客户端：$\r$\n${INI_FILE}$\r$\n$\r$\n如果无法正常使用，请在开始菜单中选择“${LINK_NAME_ZH}”。用户指南也在开始菜单中。"
LangString TEXT_NO_RIGHTS ${L} "安装或删除 Tarvo Rendering 需要管理员权限。请以管理员身份运行此程序。"
LangString TEXT_IN_USE ${L} "Tarvo Rendering 的一个文件正在使用中。请关闭 3ds Max，然后单击“重试”。目前尚未进行任何更改。"
LangString TEXT_IN_THE_WAY ${L} "由于此文件的名称和位置，Windows 在打包场景时会启动它，而不是 7-Zip。它不属于 Tarvo Rendering，此计算机的任何用户都可能将它放在那里。$\r$\n$\r$\n中止：停止安装，不进行任何更改。$\r$\n重试：移走或删除该文件后，重新检查。$\r$\n忽略：仍然安装。仅在您了解该文件时才这样做。"
LangString TEXT_FAILED ${L} "Tarvo Rendering 未能完整安装。请释放一些磁盘空间，关闭可能占用其文件的程序，然后重新运行安装程序。"
LangString TEXT_RIGHTS_NOT_SET ${L} "无法设置 Tarvo Rendering 某个文件夹的权限。没有这些权限，其他用户可能会更改其程序，因此安装已停止。"
LangString TEXT_BAD_OPTION ${L} "安装程序无法识别某个选项。INSTALL.txt 中有这些选项的说明。"
LangString TEXT_LINK ${L} "Tarvo Rendering 的一个文件夹是指向其他位置的链接。此计算机的任何用户都可能将它放在那里，因此不会沿着它进行操作。请删除该链接（不要删除它指向的内容），然后重新开始。"
LangString TEXT_UNINSTALL_TITLE ${L} "删除 Tarvo Rendering"
LangString TEXT_UNINSTALL_SUBTITLE ${L} "将为此计算机上的所有用户删除该插件。"
LangString TEXT_UNINSTALL ${L} "将删除插件、脚本、7-Zip 和开始菜单项。请先关闭 3ds Max。$\r$\n$\r$\n设置、日志、已提交的文档和打包的场景将保留在$\r$\n${DATA_FOLDER}$\r$\n除非您勾选下面的选项。"
LangString TEXT_PURGE ${L} "同时删除设置、日志、文档和打包的场景(&A)"
!undef L
!undef WELCOME_NOTE
!undef FINISH_NOTE
