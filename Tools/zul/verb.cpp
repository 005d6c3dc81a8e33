#include "verb.h"

#include <CLI/CLI.hpp>
#include <utility>

Argument Argument::required() const
{
    m_option->required();
    return *this;
}

Argument Argument::oneOf(std::vector<std::string> const& values) const
{
    m_option->check(CLI::IsMember(values));
    return *this;
}

void Argument::excludes(Argument const& other) const
{
    m_option->excludes(other.m_option);
}

Verb::Verb(CLI::App& app, char const* name, char const* description, char const* example)
    : m_app(app.add_subcommand(name, description))
{
    m_app->footer(std::string("Example: ") + example);
}

Argument Verb::option(char const* name, std::string& value, char const* description) const
{
    return Argument(*m_app->add_option(name, value, description));
}

Argument Verb::option(char const* name, std::vector<std::string>& values, char const* description) const
{
    return Argument(*m_app->add_option(name, values, description));
}

Argument Verb::flag(char const* name, bool& value, char const* description) const
{
    return Argument(*m_app->add_flag(name, value, description));
}

Argument Verb::argument(char const* name) const
{
    return Argument(*m_app->get_option(name));
}

void Verb::does(std::function<void()> action) const
{
    m_app->callback(std::move(action));
}

Verb addVerb(CLI::App& app, char const* name, char const* description, char const* example, bool& json)
{
    Verb verb(app, name, description, example);
    verb.flag("--json", json, "Write JSON");
    return verb;
}

Verb addFileVerb(CLI::App& app, char const* name, char const* description, char const* example,
                 FileOptions& options)
{
    Verb verb = addVerb(app, name, description, example, options.json);
    verb.option("FILE", options.file, "Design container, - for standard input").required();
    return verb;
}

void throwMissing(char const* arguments)
{
    throw CLI::RequiredError(arguments);
}
