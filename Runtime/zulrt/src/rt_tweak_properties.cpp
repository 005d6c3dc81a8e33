#include "rt_tweak_properties.h"

#include "applet_location.h"

using kova::templates::platform::TweakProperties;
using kova::templates::platform::TweakPropertyEntry;

// Odd spellings are part of the keys: files in the field have them.
// clang-format off
TweakPropertyEntry const rt_tweak_properties[] = {
    // key                                    environment variable                             option          default
    {"Global::EnablePCAP",                    "KOVA_ENABLE_PCAP",                              "pcap",         "Off"},
    {"Global::EnableReconfig",                "KOVA_ENABLE_RECONFIGURATION",                   "",             "On"},
    {"Global::OverrideQtLibraryPaths",        "KOVA_OVERRIDE_QT_LIBRARYPATHS",                 "",             "On"},
    {"Global::GuiConsoleFont",                "KOVA_GUI_CONSOLE_FONT",                         "",             "consolas"},
    {"Global::GuiConsoleFontSize",            "KOVA_GUI_CONSOLE_FONT_SIZE",                    "",             "0"},
    {"FG::EnableNUMASupport",                 "KOVA_ENABLE_NUMA_SUPPORT",                      "",             "Off"},
    {"FG::UnloadFPGAOnFree",                  "KOVA_UNLOAD_ON_FREE",                           "",             "Off"},
    {"FG::EnableLogging",                     "KOVA_ENABLE_LOGGING",                           "",             "Off"},
    {"GIGE::StreamChannelUdpDestinationPort", "KOVA_GIGE_STREAMCHANNEL_UDP_DESTINATION_PORT",  "",             "0"},
    {"GIGE::ServiceUdpSourcePort",            "KOVA_GIGE_SERVICE_UDP_SOURCE_PORT",             "",             "0"},
    {"GIGE::CableDiagnosticTimeout",          "KOVA_GIGE_CABLEDIAGNOSTIC_TIMEOUT",             "",             "4000"},
    {"SGC::SyncMonitorInitialWaitInMs",       "KOVA_SGC_SYNC_MONITOR_INITIAL_WAIT_IN_MS",      "",             "2000"},
    {"CXP::CommandAckTimeout",                "KOVA_CXP_COMMAND_ACK_TIMEOUT",                  "",             "250"},
    {"CXP::WaitAfterLinkReset",               "KOVA_CXP_WAIT_AFTER_LINKRESET",                 "",             "600"},
    {"CXP::WaitAfterCameraConfigDone",        "KOVA_CXP_WAIT_AFTER_CAMERACONFIG_DONE",         "",             "500"},
    {"CXP::WaitAfterLinkResetAtDiscovery",    "KOVA_CXP_WAIT_AFTER_LINKRESET_AT_DISCOVERY",    "",             "400"},
    {"CXP::WaitAfterLinkResetOfAllPorts",     "KOVA_CXP_WAIT_AFTER_LINKRESET_OF_ALL_PORTS",    "",             "400"},
    {"CXP::ReceiveAckPacketOnLinkConfig",     "KOVA_CXP_RECEIVE_ACK_PACKET_ON_LINKCONFIG",     "",             "Off"},
    {"CXP::ErrorsPerMillisecondBeforeDesync", "KOVA_CXP_ERRORS_PER_MS_BEFORE_DESYNC",          "",             "100"},
    {"CXP::DisablePowerOverCxp",              "KOVA_CXP_DISABLE_POWER_OVER_CXP",               "disablePoCXP", "Off"},
    {"HAL::Logging",                          "KOVA_HAL_LOGGING",                              "",             "0"},
    {"HW::Logging",                           "KOVA_HW_LOGGING",                               "",             "0"},
    {"HW::EnableSpiCache",                    "KOVA_ENABLE_SPICACHE",                          "",             "On"},
    {"ZULRT::RemoveTempDir",                  "KOVA_REMOVE_TEMP_ZUL_DIR",                      "",             "On"},
    {"Vistrel::CxpPowerThreshold",            "KOVA_VISTREL_CXP_POWER_THRESHOLD",              "",             "100"},
    {"Internal::ForceExternalRuntimeModules", "KOVA_FORCE_EXTERNAL_RUNTIMEMODULES",            "",             "Off"},
    {"Internal::CXPPowercycleTestRuns",       "",                                              "",             "5"},
    {"Internal::CXPPowercycleTestDelay",      "",                                              "",             "20"},
    {"Internal::CXPNummberofFrameGrabble",    "",                                              "",             "1000"},
    {"Internal::CXPNoOftimesResetPort",       "",                                              "",             "1"},
    {"Internal::NumberofTestPacketstoSend",   "",                                              "",             "10000"},
    {"Internal::NumberofTimestoRun",          "",                                              "",             "10"},
    {nullptr,                                 nullptr,                                         nullptr,        nullptr},
};
// clang-format on

std::string RtTweakProperties::fileName()
{
    char const* const directory = KovaDir::GetKovaDir();
    return directory == nullptr ? std::string() : std::string(directory) + "/tweak.conf";
}

template <>
bool RtTweakProperties::property<bool>(std::string const& key, int argc, char** argv)
{
    return TweakProperties().property<bool>(rt_tweak_properties, fileName(), key, argc, argv);
}
