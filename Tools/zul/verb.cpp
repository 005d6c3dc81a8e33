#include "verb.h"

CLI::App& addVerb(CLI::App& app, char const* name, char const* description, char const* example, bool& json)
{
    CLI::App& verb = *app.add_subcommand(name, description);
    verb.add_flag("--json", json, "Write JSON");
    verb.footer(std::string("Example: ") + example);
    return verb;
}

CLI::App& addFileVerb(CLI::App& app, char const* name, char const* description, char const* example,
                      FileOptions& options)
{
    CLI::App& verb = addVerb(app, name, description, example, options.json);
    verb.add_option("FILE", options.file, "Design container, - for standard input")->required();
    return verb;
}
