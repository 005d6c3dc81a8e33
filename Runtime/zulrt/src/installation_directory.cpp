#include "installation_directory.h"

#include "kova/templates/platform/spin_lock.h"

#include <algorithm>
#include <array>
#include <boost/algorithm/string/predicate.hpp>
#include <cstdlib>
#include <dlfcn.h>
#include <link.h>
#include <locale>
#include <string>
#include <unistd.h>

using kova::templates::platform::SpinLockVariableGuard;

namespace {

constexpr std::array<std::string_view, 5> innerNames{"bin", "dll", "Hardware Applets", "lib", "lib64"};

bool isInnerName(std::string_view name)
{
    return std::any_of(innerNames.begin(), innerNames.end(), [name](std::string_view inner) {
        return boost::algorithm::iequals(name, inner, std::locale::classic());
    });
}

/// @p path without slashes at its end; the first character stays.
std::string_view withoutTrailingSlashes(std::string_view path)
{
    std::size_t const last = path.find_last_not_of('/');
    return path.substr(0, std::max<std::size_t>(last + 1, 1));
}

/// The path of the running program. The loader knows a program by the name that it was called by, perhaps without a
/// directory.
std::string programPath()
{
    std::string path(4096, '\0');
    ssize_t const length = ::readlink("/proc/self/exe", path.data(), path.size());
    path.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    return path;
}

/// The path of the program or library that holds @p address; empty when it is not known.
std::string pathOfHolder(void const* address)
{
    Dl_info info{};
    link_map* holder = nullptr;
    void* const extra = static_cast<void*>(&holder);
    if (::dladdr1(address, &info, static_cast<void**>(extra), RTLD_DL_LINKMAP) == 0) {
        return {};
    }
    bool const isProgram = holder != nullptr && *holder->l_name == '\0';
    std::string const path = isProgram ? programPath() : std::string();
    return path.empty() && info.dli_fname != nullptr ? info.dli_fname : path;
}

} // namespace

std::string_view installationAbove(std::string_view path)
{
    std::size_t slash = path.rfind('/');
    while (slash != std::string_view::npos && slash != 0) {
        path = withoutTrailingSlashes(path.substr(0, slash));
        slash = path.rfind('/');
        if (slash != std::string_view::npos && isInnerName(path.substr(slash + 1))) {
            return withoutTrailingSlashes(path.substr(0, slash + 1));
        }
    }
    return {};
}

void InstallationDirectory::keep(std::string_view directory, InstallationSource source)
{
    m_path[directory.copy(m_path, capacity - 1)] = '\0';
    m_source = source;
}

void InstallationDirectory::find()
{
    std::string const own = pathOfHolder(m_path);
    std::string_view const above = own.size() < capacity ? installationAbove(own) : std::string_view();
    if (!above.empty()) {
        keep(above, InstallationSource::OwnPath);
    } else if (char const* const first = ::secure_getenv("KOVADIR5_64")) {
        keep(withoutTrailingSlashes(std::string_view(first).substr(0, capacity - 1)),
             InstallationSource::KOVADIR5_64);
    } else if (char const* const second = ::secure_getenv("KOVADIR5")) {
        keep(withoutTrailingSlashes(std::string_view(second).substr(0, capacity - 1)),
             InstallationSource::KOVADIR5);
    }
}

char const* InstallationDirectory::get()
{
    SpinLockVariableGuard const guard(&m_lock, nullptr);
    if (m_source == InstallationSource::Unknown) {
        find();
    }
    return m_source == InstallationSource::Unknown ? nullptr : m_path;
}

InstallationSource InstallationDirectory::source()
{
    SpinLockVariableGuard const guard(&m_lock, nullptr);
    return m_source;
}
