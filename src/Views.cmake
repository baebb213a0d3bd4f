# Everything people see: the view models and QML files of the features and the theme, in one module so that QML is
# compiled ahead of time and found without paths.
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Qml Quick)

set(kippo_qml_singletons Theme/Theme.qml Theme/Motion.qml Settings/Views/SettingsTheme.qml)
set(kippo_qml
  ${kippo_qml_singletons}
  Theme/Chip.qml
  Theme/Fact.qml
  Theme/FocusScroll.qml
  Theme/LaterPart.qml
  Theme/PlainText.qml
  Theme/ScrollFade.qml
  Theme/ScrollHint.qml
  Theme/SectionHeading.qml
  Theme/StripButton.qml
  Theme/TextButton.qml
  Agents/Views/AgentsPage.qml
  Agents/Views/EmptySessions.qml
  Agents/Views/LeftBehindSection.qml
  Agents/Views/LeftRunningLine.qml
  Agents/Views/LeftoverLine.qml
  Agents/Views/PortChip.qml
  Agents/Views/PortRow.qml
  Agents/Views/ProcessLine.qml
  Agents/Views/ProjectLine.qml
  Agents/Views/SectionTabs.qml
  Agents/Views/SessionDelegate.qml
  Agents/Views/SessionDetails.qml
  Agents/Views/SessionsSection.qml
  Agents/Views/UsageSection.qml
  Agents/Views/WeekBars.qml
  Focus/Views/FocusButton.qml
  Focus/Views/FocusCountdown.qml
  Focus/Views/FocusPage.qml
  Focus/Views/MinutesChooser.qml
  Focus/Views/RoundDots.qml
  Focus/Views/StretchScreen.qml
  Focus/Views/TimerScreen.qml
  Mascot/Views/BubbleButton.qml
  Mascot/Views/MascotBubble.qml
  Mascot/Views/MascotFloor.qml
  Theme/StatusCount.qml
  Theme/StatusLight.qml
  Notch/Views/ExpandedView.qml
  Notch/Views/NotchPanel.qml
  Notch/Views/PageBar.qml
  Notch/Views/PageTab.qml
  Notch/Views/PeekView.qml
  Notch/Views/WingView.qml
  Settings/Views/AboutSettingsPage.qml
  Settings/Views/AgentSettingsPage.qml
  Settings/Views/AlertSettingsPage.qml
  Settings/Views/AppearanceBindings.qml
  Settings/Views/ChangeSheet.qml
  Settings/Views/ChoiceRow.qml
  Settings/Views/FocusRing.qml
  Settings/Views/FocusSettingsPage.qml
  Settings/Views/GeneralSettingsPage.qml
  Settings/Views/GroupRow.qml
  Settings/Views/GuideSheet.qml
  Settings/Views/HookAgentRow.qml
  Settings/Views/HotKeyRow.qml
  Settings/Views/IconButton.qml
  Settings/Views/KeyCaps.qml
  Settings/Views/NameListRow.qml
  Settings/Views/NotchPicture.qml
  Settings/Views/NotchSettingsPage.qml
  Settings/Views/NoticeBanner.qml
  Settings/Views/NumberRow.qml
  Settings/Views/PlainAgentRow.qml
  Settings/Views/PushButton.qml
  Settings/Views/ReportSheet.qml
  Settings/Views/SettingsGroup.qml
  Settings/Views/SettingsPage.qml
  Settings/Views/SettingsSheet.qml
  Settings/Views/SettingsSidebar.qml
  Settings/Views/SettingsText.qml
  Settings/Views/SettingsWindow.qml
  Settings/Views/SoundRow.qml
  Settings/Views/StepSign.qml
  Settings/Views/SwatchRow.qml
  Settings/Views/SwitchRow.qml
  Settings/Views/ThinScrollBar.qml
  Settings/Views/WatchedPrograms.qml
  Settings/Views/Welcome/ConnectStep.qml
  Settings/Views/Welcome/EndStep.qml
  Settings/Views/Welcome/HelloStep.qml
  Settings/Views/Welcome/StartStep.qml
  Settings/Views/Welcome/WelcomePicture.qml
  Settings/Views/Welcome/WelcomeStep.qml
  Settings/Views/Welcome/WelcomeWindow.qml
)
set_source_files_properties(${kippo_qml_singletons} PROPERTIES QT_QML_SINGLETON_TYPE TRUE)
foreach(file IN LISTS kippo_qml)
  get_filename_component(name ${file} NAME)
  set_source_files_properties(${file} PROPERTIES QT_RESOURCE_ALIAS ${name})
endforeach()

set(kippo_views_sources
  Theme/AgentBadge.cpp
  Agents/Views/AgentsViewModel.cpp
  Agents/Views/LeftBehindViewModel.cpp
  Agents/Views/SessionDetail.cpp
  Agents/Views/SessionListModel.cpp
  Agents/Views/SessionRow.cpp
  Agents/Views/StopConfirmation.cpp
  Agents/Views/UsageViewModel.cpp
  Focus/Views/CountdownRing.cpp
  Focus/Views/FigurePainter.cpp
  Focus/Views/FocusClock.cpp
  Focus/Views/FocusViewModel.cpp
  Focus/Views/StretchFigure.cpp
  Focus/Views/StretchSheet.cpp
  Focus/Views/StretchViewModel.cpp
  Mascot/Views/MascotItem.cpp
  Mascot/Views/MascotPainter.cpp
  Mascot/Views/MascotSheet.cpp
  Mascot/Views/MascotStageViewModel.cpp
  Mascot/Views/MascotViewModel.cpp
  Theme/Appearance.cpp
  Theme/Palette.cpp
  Theme/StatusGlyph.cpp
  Notch/Views/NotchSilhouette.cpp
  Notch/Views/NotchStage.cpp
  Notch/Views/NotchViewModel.cpp
  Theme/Icon.cpp
  Settings/Views/AboutViewModel.cpp
  Settings/Views/AgentSettingsRow.cpp
  Settings/Views/AgentSettingsViewModel.cpp
  Settings/Views/FocusSettingsViewModel.cpp
  Settings/Views/HotKeysViewModel.cpp
  Settings/Views/LoginViewModel.cpp
  Settings/Views/PlannedChange.cpp
  Settings/Views/PreferencesViewModel.cpp
  Settings/Views/SoundsViewModel.cpp
  Settings/Views/WelcomeViewModel.cpp
)
qt_add_library(kippo_views STATIC)
set_target_properties(kippo_views PROPERTIES AUTOMOC ON)
if(KIPPO_QMLCACHEGEN)
  set_target_properties(kippo_views PROPERTIES QT_QMLCACHEGEN_EXECUTABLE ${KIPPO_QMLCACHEGEN})
endif()
qt_add_qml_module(kippo_views
  URI Kippo
  VERSION 1.0
  DEPENDENCIES QtQuick
  RESOURCE_PREFIX /qt/qml
  OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/qml/Kippo
  QML_FILES ${kippo_qml}
  SOURCES
    ${kippo_views_sources}
    Theme/AgentBadge.h
    Theme/Appearance.h
    Theme/AgentLook.h
    Agents/Views/AgentsViewModel.h
    Agents/Views/LeftBehindViewModel.h
    Agents/Views/SessionDetail.h
    Agents/Views/SessionListModel.h
    Agents/Views/SessionRow.h
    Focus/Views/CountdownRing.h
    Focus/Views/FigurePainter.h
    Focus/Views/FocusClock.h
    Focus/Views/FocusViewModel.h
    Focus/Views/StretchFigure.h
    Focus/Views/StretchSheet.h
    Focus/Views/StretchViewModel.h
    Mascot/Views/MascotItem.h
    Mascot/Views/MascotPainter.h
    Mascot/Views/MascotSheet.h
    Mascot/Views/MascotStageViewModel.h
    Agents/Views/UsageViewModel.h
    Mascot/Views/MascotViewModel.h
    Theme/StatusGlyph.h
    Theme/Texts.h
    Notch/Views/NotchSilhouette.h
    Notch/Views/NotchStage.h
    Notch/Views/NotchViewModel.h
    Theme/Icon.h
    Settings/Views/AboutViewModel.h
    Settings/Views/AgentSettingsRow.h
    Settings/Views/AgentSettingsViewModel.h
    Settings/Views/FocusSettingsViewModel.h
    Settings/Views/HotKeysViewModel.h
    Settings/Views/LoginViewModel.h
    Settings/Views/PlannedChange.h
    Settings/Views/PreferencesViewModel.h
    Settings/Views/SoundsViewModel.h
    Settings/Views/WelcomeViewModel.h
    Theme/KeyedListModel.h
)
# The generated registration includes headers by their bare name.
target_include_directories(kippo_views PRIVATE Agents/Views Focus/Views Mascot/Views Notch/Views Settings/Views Theme)
target_link_libraries(kippo_views PUBLIC kippo_core Qt6::Core Qt6::Gui Qt6::Qml Qt6::Quick)
# Warnings as errors for what people wrote; not for what Qt generates.
set_source_files_properties(${kippo_views_sources} PROPERTIES
  COMPILE_OPTIONS "$<TARGET_PROPERTY:kippo_warnings,INTERFACE_COMPILE_OPTIONS>")

# What QML is compiled to, eight files at once: the headers that each of them reads take longer than the file.
get_target_property(compiled kippo_views SOURCES)
list(FILTER compiled INCLUDE REGEX "/qmlcache/.*_qml\\.cpp$")
set(count 0)
foreach(file IN LISTS compiled)
  math(EXPR batch "${count} / 8")
  math(EXPR count "${count} + 1")
  set_source_files_properties(${file} PROPERTIES UNITY_GROUP qml_${batch})
endforeach()
set_target_properties(kippo_views PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
