#include "applet_location.h"
#include "environment.h"
#include "files.h"
#include "rt_tweak_properties.h"
#include "throwing.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <vector>

namespace {

using kova::templates::platform::PropertySource;
using kova::templates::platform::TweakProperties;
using kova::templates::platform::TweakPropertyEntry;

constexpr std::array rows{
    TweakPropertyEntry{"Global::EnablePCAP", "KOVA_ENABLE_PCAP", "pcap", "Off"},
    TweakPropertyEntry{"Global::EnableReconfig", "KOVA_ENABLE_RECONFIGURATION", "", "On"},
    TweakPropertyEntry{"Global::OverrideQtLibraryPaths", "KOVA_OVERRIDE_QT_LIBRARYPATHS", "", "On"},
    TweakPropertyEntry{"Global::GuiConsoleFont", "KOVA_GUI_CONSOLE_FONT", "", "consolas"},
    TweakPropertyEntry{"Global::GuiConsoleFontSize", "KOVA_GUI_CONSOLE_FONT_SIZE", "", "0"},
    TweakPropertyEntry{"FG::EnableNUMASupport", "KOVA_ENABLE_NUMA_SUPPORT", "", "Off"},
    TweakPropertyEntry{"FG::UnloadFPGAOnFree", "KOVA_UNLOAD_ON_FREE", "", "Off"},
    TweakPropertyEntry{"FG::EnableLogging", "KOVA_ENABLE_LOGGING", "", "Off"},
    TweakPropertyEntry{"GIGE::StreamChannelUdpDestinationPort",
                       "KOVA_GIGE_STREAMCHANNEL_UDP_DESTINATION_PORT", "", "0"},
    TweakPropertyEntry{"GIGE::ServiceUdpSourcePort", "KOVA_GIGE_SERVICE_UDP_SOURCE_PORT", "", "0"},
    TweakPropertyEntry{"GIGE::CableDiagnosticTimeout", "KOVA_GIGE_CABLEDIAGNOSTIC_TIMEOUT", "", "4000"},
    TweakPropertyEntry{"SGC::SyncMonitorInitialWaitInMs", "KOVA_SGC_SYNC_MONITOR_INITIAL_WAIT_IN_MS", "",
                       "2000"},
    TweakPropertyEntry{"CXP::CommandAckTimeout", "KOVA_CXP_COMMAND_ACK_TIMEOUT", "", "250"},
    TweakPropertyEntry{"CXP::WaitAfterLinkReset", "KOVA_CXP_WAIT_AFTER_LINKRESET", "", "600"},
    TweakPropertyEntry{"CXP::WaitAfterCameraConfigDone", "KOVA_CXP_WAIT_AFTER_CAMERACONFIG_DONE", "", "500"},
    TweakPropertyEntry{"CXP::WaitAfterLinkResetAtDiscovery", "KOVA_CXP_WAIT_AFTER_LINKRESET_AT_DISCOVERY", "",
                       "400"},
    TweakPropertyEntry{"CXP::WaitAfterLinkResetOfAllPorts", "KOVA_CXP_WAIT_AFTER_LINKRESET_OF_ALL_PORTS", "",
                       "400"},
    TweakPropertyEntry{"CXP::ReceiveAckPacketOnLinkConfig", "KOVA_CXP_RECEIVE_ACK_PACKET_ON_LINKCONFIG", "",
                       "Off"},
    TweakPropertyEntry{"CXP::ErrorsPerMillisecondBeforeDesync", "KOVA_CXP_ERRORS_PER_MS_BEFORE_DESYNC", "",
                       "100"},
    TweakPropertyEntry{"CXP::DisablePowerOverCxp", "KOVA_CXP_DISABLE_POWER_OVER_CXP", "disablePoCXP", "Off"},
    TweakPropertyEntry{"HAL::Logging", "KOVA_HAL_LOGGING", "", "0"},
    TweakPropertyEntry{"HW::Logging", "KOVA_HW_LOGGING", "", "0"},
    TweakPropertyEntry{"HW::EnableSpiCache", "KOVA_ENABLE_SPICACHE", "", "On"},
    TweakPropertyEntry{"ZULRT::RemoveTempDir", "KOVA_REMOVE_TEMP_ZUL_DIR", "", "On"},
    TweakPropertyEntry{"Vistrel::CxpPowerThreshold", "KOVA_VISTREL_CXP_POWER_THRESHOLD", "", "100"},
    TweakPropertyEntry{"Internal::ForceExternalRuntimeModules", "KOVA_FORCE_EXTERNAL_RUNTIMEMODULES", "",
                       "Off"},
    TweakPropertyEntry{"Internal::CXPPowercycleTestRuns", "", "", "5"},
    TweakPropertyEntry{"Internal::CXPPowercycleTestDelay", "", "", "20"},
    TweakPropertyEntry{"Internal::CXPNummberofFrameGrabble", "", "", "1000"},
    TweakPropertyEntry{"Internal::CXPNoOftimesResetPort", "", "", "1"},
    TweakPropertyEntry{"Internal::NumberofTestPacketstoSend", "", "", "10000"},
    TweakPropertyEntry{"Internal::NumberofTimestoRun", "", "", "10"}};

TEST(RtTweakProperties, TableHasEachPropertyInOrderAndThenNullTexts)
{
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_STREQ(rt_tweak_properties[i].key, rows.at(i).key) << i;
        EXPECT_STREQ(rt_tweak_properties[i].environmentVariable, rows.at(i).environmentVariable) << i;
        EXPECT_STREQ(rt_tweak_properties[i].option, rows.at(i).option) << i;
        EXPECT_STREQ(rt_tweak_properties[i].defaultValue, rows.at(i).defaultValue) << i;
    }
    TweakPropertyEntry const& end = rt_tweak_properties[rows.size()];
    EXPECT_EQ(end.key, nullptr);
    EXPECT_EQ(end.environmentVariable, nullptr);
    EXPECT_EQ(end.option, nullptr);
    EXPECT_EQ(end.defaultValue, nullptr);
}

bool removesTempDir(std::vector<char*> arguments = {})
{
    return RtTweakProperties::property<bool>("ZULRT::RemoveTempDir", static_cast<int>(arguments.size()),
                                             arguments.data());
}

TEST(RtTweakProperties, EnvironmentSetsTheSwitch)
{
    EnvironmentVariable const unset("KOVA_REMOVE_TEMP_ZUL_DIR", nullptr);
    EXPECT_TRUE(removesTempDir()) << "the default";
    for (char const* const text : {"OFF", "2", "no", ""}) {
        EnvironmentVariable const set("KOVA_REMOVE_TEMP_ZUL_DIR", text);
        EXPECT_FALSE(removesTempDir()) << text;
    }
    EnvironmentVariable const set("KOVA_REMOVE_TEMP_ZUL_DIR", "Yes");
    EXPECT_TRUE(removesTempDir());
}

TEST(RtTweakProperties, CommandLineIsAskedWithoutRegardToCase)
{
    EnvironmentVariable const environment("KOVA_ENABLE_PCAP", "off");
    std::string argument = "--PCAP=on";
    char* arguments[] = {argument.data()};
    EXPECT_TRUE(RtTweakProperties::property<bool>("Global::EnablePCAP", 1, arguments));
    EXPECT_FALSE(RtTweakProperties::property<bool>("Global::EnablePCAP", 0, nullptr));
}

TEST(RtTweakProperties, UnknownKeyThrows)
{
    EXPECT_TRUE(
        throws<std::runtime_error>([] { RtTweakProperties::property<bool>("ZULRT::Unknown", 0, nullptr); },
                                   "TweakProperties: Unknown property requested: 'ZULRT::Unknown'"));
}

TEST(RtTweakProperties, FileIsInTheInstallationDirectory)
{
    ASSERT_NE(KovaDir::GetKovaDir(), nullptr);
    EXPECT_EQ(RtTweakProperties::fileName(), KovaDir::GetKovaDir() + std::string("/tweak.conf"));
}

/// The installation directory of this program is that of the build, which is left alone: the table with another file.
TEST(RtTweakProperties, FileWinsOverTheEnvironmentInAnyCase)
{
    TemporaryDirectory const directory;
    std::string const file = directory / "tweak.conf";
    EnvironmentVariable const environment("KOVA_REMOVE_TEMP_ZUL_DIR", "on");
    auto const ask = [&](std::string const& text) {
        writeFile(file, Bytes().chars(text));
        return TweakProperties().property<bool>(rt_tweak_properties, file, "ZULRT::RemoveTempDir", 0,
                                                nullptr);
    };
    EXPECT_FALSE(ask("[ZULRT]\nRemoveTempDir = off   # kept for a look inside\n"));
    EXPECT_FALSE(ask("[zulrt]\nremovetempdir=0\n"));
    EXPECT_TRUE(ask("[ZULRT]\n# RemoveTempDir = off\n"));
}

} // namespace
