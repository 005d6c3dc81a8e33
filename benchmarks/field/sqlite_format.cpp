#include "format.h"

#include "content.h"

#include <sqlite3.h>
#include <stdexcept>
#include <string_view>

namespace {

constexpr char const* schema = R"(
    CREATE TABLE process(id INTEGER, name TEXT, clock INTEGER);
    CREATE TABLE module(number INTEGER PRIMARY KEY, process INTEGER, type TEXT, name TEXT, full_name TEXT);
    CREATE TABLE parameter(module INTEGER, position INTEGER, name TEXT, value INTEGER, type INTEGER, flags INTEGER,
        PRIMARY KEY(module, position)) WITHOUT ROWID;
    CREATE TABLE register(number INTEGER PRIMARY KEY, name TEXT, address INTEGER, value INTEGER, msb INTEGER,
        lsb INTEGER, access INTEGER, read_only INTEGER, old INTEGER);
    CREATE TABLE link(alias TEXT, target TEXT, access INTEGER, read_only INTEGER);
    CREATE TABLE event(name TEXT, register TEXT, queue INTEGER, bit INTEGER, data_length INTEGER);
    CREATE TABLE user_info(name TEXT, number INTEGER, text TEXT);
    CREATE TABLE camera(channel INTEGER, module INTEGER);
    CREATE TABLE library(name TEXT, system INTEGER, compressed INTEGER, content BLOB);
    CREATE TABLE configuration(number INTEGER, fpga_type INTEGER, board INTEGER, revision INTEGER, bitstream BLOB);
)";

/// A database in memory.
class Database {
public:
    Database() { check(sqlite3_open(":memory:", &m_handle)); }
    Database(Database const&) = delete;
    Database& operator=(Database const&) = delete;
    ~Database() { sqlite3_close(m_handle); }

    void run(char const* sql) { check(sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr)); }
    void check(int result) const
    {
        if (result != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(m_handle));
        }
    }
    sqlite3* handle() const { return m_handle; }

private:
    sqlite3* m_handle = nullptr;
};

/// A prepared statement. Texts and payloads that are bound have to live until it has run.
class Statement {
public:
    Statement(Database const& database, char const* sql) : m_database(database)
    {
        database.check(sqlite3_prepare_v2(database.handle(), sql, -1, &m_handle, nullptr));
    }
    Statement(Statement const&) = delete;
    Statement& operator=(Statement const&) = delete;
    ~Statement() { sqlite3_finalize(m_handle); }

    /// Binds all values; then the rows are those of step().
    template <class... Values>
    void start(Values const&... values)
    {
        sqlite3_reset(m_handle);
        int position = 0;
        (bind(++position, values), ...);
    }
    /// @return false behind the last row
    bool step()
    {
        int const result = sqlite3_step(m_handle);
        if (result != SQLITE_ROW && result != SQLITE_DONE) {
            m_database.check(result);
        }
        return result == SQLITE_ROW;
    }
    template <class... Values>
    void insert(Values const&... values)
    {
        start(values...);
        step();
    }

    std::int64_t number(int column) const { return sqlite3_column_int64(m_handle, column); }
    std::string_view text(int column) const
    {
        auto const* const characters = static_cast<char const*>(sqlite3_column_blob(m_handle, column));
        return {characters, static_cast<std::size_t>(sqlite3_column_bytes(m_handle, column))};
    }
    std::vector<std::byte> blob(int column) const
    {
        auto const* const first = static_cast<std::byte const*>(sqlite3_column_blob(m_handle, column));
        return {first, first + sqlite3_column_bytes(m_handle, column)};
    }

private:
    void bind(int position, std::uint64_t value)
    {
        sqlite3_bind_int64(m_handle, position, static_cast<std::int64_t>(value));
    }
    void bind(int position, std::string const& text)
    {
        sqlite3_bind_text64(m_handle, position, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
    }
    void bind(int position, Content::Payload payload)
    {
        sqlite3_bind_blob64(m_handle, position, payload.data(), payload.size(), SQLITE_STATIC);
    }

    Database const& m_database;
    sqlite3_stmt* m_handle = nullptr;
};

void writeModules(Content const& content, Database const& database)
{
    Statement process(database, "INSERT INTO process VALUES(?, ?, ?)");
    for (auto const& from : content.processes) {
        process.insert(from.id, from.name, from.clock);
    }
    Statement module(database, "INSERT INTO module VALUES(?, ?, ?, ?, ?)");
    Statement parameter(database, "INSERT INTO parameter VALUES(?, ?, ?, ?, ?, ?)");
    for (auto const& from : content.modules) {
        module.insert(from.index, from.process, from.type, from.name, from.fullName);
        std::uint32_t position = 0;
        for (auto const& p : from.parameters) {
            parameter.insert(from.index, position++, p.name, p.value, p.type, p.flags);
        }
    }
    Statement camera(database, "INSERT INTO camera VALUES(?, ?)");
    for (auto const& from : content.cameras) {
        camera.insert(from.channel, from.module);
    }
}

void writeRegisters(Content const& content, Database const& database)
{
    Statement reg(database, "INSERT INTO register VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?)");
    std::uint32_t number = 0;
    for (auto const& from : content.registers) {
        reg.insert(++number, from.name, from.address, from.value, from.msb, from.lsb, from.access,
                   from.readOnly, from.old);
    }
    Statement link(database, "INSERT INTO link VALUES(?, ?, ?, ?)");
    for (auto const& from : content.links) {
        link.insert(from.alias, from.target, from.access, from.readOnly);
    }
    Statement event(database, "INSERT INTO event VALUES(?, ?, ?, ?, ?)");
    for (auto const& from : content.events) {
        event.insert(from.name, from.registerName, from.queue, from.bit, from.dataLength);
    }
}

void writePayloads(Content const& content, Database const& database)
{
    Statement info(database, "INSERT INTO user_info VALUES(?, ?, ?)");
    for (auto const& from : content.userInfos) {
        info.insert(from.name, from.number, from.text);
    }
    Statement library(database, "INSERT INTO library VALUES(?, ?, ?, ?)");
    for (auto const& from : content.libraries) {
        library.insert(from.name, from.system, from.compressed, from.bytes);
    }
    Statement configuration(database, "INSERT INTO configuration VALUES(?, ?, ?, ?, ?)");
    for (auto const& from : content.configurations) {
        configuration.insert(from.index, from.fpgaType, from.board, from.revision, from.bitstream);
    }
}

Stored serialized(Database const& database)
{
    sqlite3_int64 size = 0;
    unsigned char* const bytes = sqlite3_serialize(database.handle(), "main", &size, 0);
    if (bytes == nullptr) {
        throw std::runtime_error("the database cannot be written");
    }
    return {std::shared_ptr<void const>(bytes, sqlite3_free),
            std::as_bytes(std::span(bytes, static_cast<std::size_t>(size)))};
}

class SqliteDesign : public OpenDesign {
public:
    explicit SqliteDesign(std::span<std::byte const> bytes)
    {
        attach(bytes);
        // What its documentation asks for when a file may be hostile.
        m_database.run("PRAGMA trusted_schema = OFF; PRAGMA cell_size_check = ON");
        Statement check(m_database, "PRAGMA quick_check(1)");
        if (!check.step() || check.text(0) != "ok") {
            throw std::runtime_error("the database is damaged");
        }
    }

    LookedUp lookUp(std::span<std::string const> names) override
    {
        Statement found(m_database, "SELECT address FROM register WHERE name = ?");
        LookedUp all;
        for (std::string const& name : names) {
            found.start(name);
            if (found.step()) {
                all.add(static_cast<std::uint32_t>(found.number(0)));
            }
        }
        return all;
    }

    Walked walk() override
    {
        Statement modules(m_database, "SELECT number FROM module ORDER BY number");
        Statement parameters(m_database,
                             "SELECT value, name FROM parameter WHERE module = ? ORDER BY position");
        Walked walked;
        while (modules.step()) {
            parameters.start(static_cast<std::uint64_t>(modules.number(0)));
            while (parameters.step()) {
                walked.add(static_cast<std::uint64_t>(parameters.number(0)), parameters.text(1).front());
            }
        }
        return walked;
    }

    // A row's bytes go with the row.
    std::vector<std::span<std::byte const>> bitstreams() override
    {
        m_bitstreams.clear();
        Statement rows(m_database, "SELECT bitstream FROM configuration ORDER BY rowid");
        while (rows.step()) {
            m_bitstreams.push_back(rows.blob(0));
        }
        return {m_bitstreams.begin(), m_bitstreams.end()};
    }

    // Changes are made in place: the pages are what a save writes.
    Stored save() override { return serialized(m_database); }

private:
    /// Reads where the bytes are, without a copy.
    void attach(std::span<std::byte const> bytes)
    {
        auto const size = static_cast<sqlite3_int64>(bytes.size());
        auto* const pages = reinterpret_cast<unsigned char*>(const_cast<std::byte*>(bytes.data()));
        m_database.check(
            sqlite3_deserialize(m_database.handle(), "main", pages, size, size, SQLITE_DESERIALIZE_READONLY));
    }

    Database m_database;
    std::vector<std::vector<std::byte>> m_bitstreams;
};

class Sqlite : public Format {
    std::string name() const override { return "SQLite"; }

    Stored write(Content const& content, std::span<std::byte const>) const override
    {
        Database database;
        database.run(schema);
        database.run("BEGIN");
        writeModules(content, database);
        writeRegisters(content, database);
        writePayloads(content, database);
        database.run("COMMIT");
        database.run("CREATE INDEX register_by_name ON register(name)");
        return serialized(database);
    }

    std::unique_ptr<OpenDesign> open(std::span<std::byte const> bytes) const override
    {
        return std::make_unique<SqliteDesign>(bytes);
    }
};

} // namespace

std::unique_ptr<Format> sqlite()
{
    return std::make_unique<Sqlite>();
}
