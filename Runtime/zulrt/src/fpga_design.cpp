#include "fpga_design.h"

#include "applet_location.h"
#include "library_directories.h"
#include "outcome.h"
#include "rt_tweak_properties.h"
#include "zullib.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

constexpr int notFound = -ENOENT;
constexpr int invalidData = -EINVAL;

constexpr char const* removeTempDir = "ZULRT::RemoveTempDir";

} // namespace

fpga_design::fpga_design()
    : m_libraries(RtTweakProperties::property<bool>(removeTempDir, 0, nullptr)),
      m_settings(std::make_unique<DesignSettings>())
{
}

fpga_design::~fpga_design()
{
    release();
    if (m_libraries.removesPrivate()) {
        delete_old_dirs();
    }
}

void fpga_design::release() noexcept
{
    m_modules.clear();
    m_relativeParams.clear();
    m_tags = {};
    m_events.clear();
    m_zul.reset();
    m_file = {};
}

int fpga_design::LoadDesignWithType(char const* name, char** path, int boardType, int opsys)
{
    char* found = nullptr;
    bool isFileProblem = false;
    int const result = outcomeOf([&] {
        if (name == nullptr) {
            return invalidData;
        }
        if (!getAppletDir(name, static_cast<unsigned int>(boardType), &found)) {
            return notFound;
        }
        if (int const loaded = loadFile(found); loaded != 0) {
            isFileProblem = true;
            return loaded;
        }
        int const obtained = m_libraries.replace(*m_zul, static_cast<unsigned int>(opsys));
        return obtained != 0 || opsys == 0 ? obtained : unpackLibs(static_cast<unsigned int>(opsys));
    });
    std::unique_ptr<char[]> owned(found);
    if (path != nullptr) {
        // A file that cannot be mapped or read is still told: the caller can say which one it was.
        *path = result == 0 || isFileProblem ? owned.release() : nullptr;
    }
    return result;
}

int fpga_design::loadFile(char const* path)
{
    release();
    MappedFile file(path);
    if (!file) {
        return -errno;
    }
    m_file = std::move(file);
    return loadContainer(m_file.data(), m_file.size());
}

int fpga_design::LoadDesignFromBuffer(void const* data, unsigned long length)
{
    release();
    return loadContainer(data, length);
}

int fpga_design::loadContainer(void const* data, unsigned long length)
{
    return outcomeOf([&] {
        m_settings = std::make_unique<DesignSettings>();
        m_zul = std::make_unique<ZUL>();
        if (int const loaded = m_zul->Load(data, length); loaded < 0) {
            return loaded;
        }
        m_tags = DesignTags(*m_zul);
        setupEvents();
        EvaluateModuleData();
        ScanDllDir();
        return 0;
    });
}

int fpga_design::unpackLibs(unsigned int opsys)
{
    return outcomeOf([&] { return m_zul == nullptr ? invalidData : m_libraries.unpack(*m_zul, opsys); });
}

void fpga_design::setupEvents()
{
    m_events.push_back(makeEvents(m_tags));
}

fpga_design::EventTable fpga_design::makeEvents(DesignTags const& tags) const
{
    EventTable table;
    if (tags.events.size() == 0) {
        return table;
    }
    table.records = std::make_unique<zul_event_record[]>(tags.events.size());
    for (ZUL_event* const event : tags.events) {
        if (std::string name = event->getName() == nullptr ? "" : event->getName();
            name.find('\\') != std::string::npos) {
            event->setName(RBS(name.data()));
        }
        table.records[table.count++] = {.queue = event->getUiq(),
                                        .bit = event->getBit(),
                                        .data_length = event->getDataLen(),
                                        .name = event->getName(),
                                        .register_index = m_zul->getRegisterByName(event->getRegisterName()),
                                        .firmware = event->isFirmwareEvent() ? 1 : 0};
    }
    return table;
}

void fpga_design::ScanDllDir()
{
    for (auto const& module : m_modules) {
        if (char const* const type = module->getModule()->getType()) {
            module->setLibraryFileName(("lib" + std::string(type) + ".dylib").c_str());
            module->setFactoryName((std::string(type) + "QelLocalCreate").c_str());
        }
    }
}

fpga_design* fpga_design::createTrampoline(unsigned char version, unsigned char revision) noexcept
{
    try {
        auto design = std::make_unique<fpga_design>();
        design->m_zul = std::make_unique<ZUL>();
        auto info =
            std::make_unique<ZUL_fixed_fpga_info>(design->m_zul.get(), std::uint8_t{0}, version, revision);
        design->m_zul->AddTag(info.get());
        info.release();
        design->m_tags = DesignTags(*design->m_zul);
        return design.release();
    } catch (...) {
        return nullptr;
    }
}

char* RBS(char* text) noexcept
{
    if (text != nullptr) {
        std::replace(text, text + std::char_traits<char>::length(text), '\\', '_');
    }
    return text;
}

int GetLastError() noexcept
{
    return errno;
}
