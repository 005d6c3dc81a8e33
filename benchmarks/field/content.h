#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// What a design holds, without a format: each format writes itself from here.
struct Content {
    using Payload = std::span<std::byte const>;

    struct Process {
        std::uint32_t id;
        std::string name;
        std::uint32_t clock;
    };
    struct Parameter {
        std::string name;
        std::uint64_t value;
        std::uint32_t type;
        std::uint32_t flags;
    };
    struct Module {
        std::uint32_t index;
        std::uint32_t process;
        std::string type;
        std::string name;
        std::string fullName;
        std::vector<Parameter> parameters;
    };
    struct Register {
        std::string name;
        std::uint32_t address;
        std::uint64_t value;
        std::uint32_t msb;
        std::uint32_t lsb;
        std::uint32_t access;
        bool readOnly;
        bool old;
    };
    struct Link {
        std::string alias;
        std::string target;
        std::uint32_t access;
        bool readOnly;
    };
    struct Event {
        std::string name;
        std::string registerName;
        std::uint32_t queue;
        std::uint32_t bit;
        std::uint32_t dataLength;
    };
    struct UserInfo {
        std::string name;
        std::uint32_t number; // 0 when the value is a text
        std::string text;
    };
    struct Camera {
        std::uint32_t channel;
        std::uint32_t module;
    };
    struct Library {
        std::string name;
        std::uint32_t system;
        bool compressed;
        Payload bytes;
    };
    struct Configuration {
        std::uint32_t index;
        std::uint32_t fpgaType;
        std::uint32_t board;
        std::uint32_t revision;
        Payload bitstream;
    };

    std::vector<Process> processes;
    std::vector<Module> modules;
    std::vector<Register> registers;
    std::vector<Link> links;
    std::vector<Event> events;
    std::vector<UserInfo> userInfos;
    std::vector<Camera> cameras;
    std::vector<Library> libraries;
    std::vector<Configuration> configurations;
};

/// Reads a container with the class library. Payloads lie in @p container.
/// @throws std::runtime_error when it does not load; what loading throws
Content contentOf(std::span<std::byte const> container);
