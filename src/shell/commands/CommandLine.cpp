#include "CommandLine.h"

#include "AppError.h"
#include "ApplicationCommand.h"
#include "CaptureSource.h"
#include "ClipboardOffer.h"
#include "DesktopSource.h"
#include "DocumentProcess.h"
#include "HotkeyCommand.h"
#include "ModelCommand.h"
#include "PlanCommand.h"
#include "ReadCommand.h"
#include "SummarizeCommand.h"
#include "TextOutput.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <iostream>
#include <new>
#include <utility>
#include <vector>

namespace CommandLine {

namespace {

constexpr int exitError = 1;
constexpr int exitUsage = 2;

template <typename Value>
using Choices = std::vector<std::pair<std::string, Value>>;

const Choices<SummaryMode> modes = {{"bullets", SummaryMode::bullets},
                                    {"executive", SummaryMode::executive},
                                    {"tldr", SummaryMode::tldr},
                                    {"actions", SummaryMode::actions}};
const Choices<SummaryLength> lengths = {{"brief", SummaryLength::brief},
                                        {"balanced", SummaryLength::balanced},
                                        {"detailed", SummaryLength::detailed}};
const Choices<ScreenGrab::Kind> captures = {{"window", ScreenGrab::Kind::window},
                                            {"screen", ScreenGrab::Kind::screen},
                                            {"selection", ScreenGrab::Kind::region}};

/// An option that takes one of the names in `choices`.
template <typename Target, typename Value>
CLI::Option* addChoice(CLI::App& command, const std::string& option, Target& value,
                       const Choices<Value>& choices, const std::string& description)
{
    std::string names;
    for (const auto& [name, unused] : choices)
        names += (names.empty() ? "" : "|") + name;
    const auto choose = [&value, &choices, names](const std::string& chosen) {
        for (const auto& [name, choice] : choices) {
            if (name == chosen) {
                value = choice;
                return;
            }
        }
        throw CLI::ValidationError(chosen + " is not one of " + names + ".");
    };
    return command.add_option_function<std::string>(option, choose, description)->type_name(names);
}

/// Adds the options that say where the text comes from.
void addSource(CLI::App& command, SummaryRequest& request)
{
    CLI::Option* source =
        command
            .add_option("SOURCE", request.source,
                        "A file (text, PDF, Word, rich text, picture), a web address with its "
                        "http:// or https://, or - for standard input")
            ->type_name("");
    CLI::Option* capture =
        addChoice(command, "--capture", request.capture, captures,
                  "Instead of SOURCE, read the front window, the screen or a part of it");
    CLI::Option* selection = command.add_flag_callback(
        "--selection", [&request] { request.desktop = DesktopSource::Kind::selection; },
        "Instead of SOURCE, the text selected in the application in front");
    CLI::Option* clipboard = command.add_flag_callback(
        "--clipboard", [&request] { request.desktop = DesktopSource::Kind::clipboard; },
        "Instead of SOURCE, the text on the clipboard");
    capture->excludes(source);
    selection->excludes(source)->excludes(capture)->excludes(clipboard);
    clipboard->excludes(source)->excludes(capture);
    command.parse_complete_callback([source, capture, selection, clipboard] {
        if (source->count() + capture->count() + selection->count() + clipboard->count() == 0)
            throw CLI::RequiredError("SOURCE");
    });
}

void addRequest(CLI::App& command, SummaryRequest& request)
{
    addChoice(command, "--mode", request.mode, modes, "Shape of the summary (default: bullets)");
    addChoice(command, "--length", request.length, lengths, "How much of it (default: balanced)");
    addSource(command, request);
}

void addModelFile(CLI::App& command, std::string& model)
{
    command
        .add_option("--model", model, "A model file (GGUF) to use instead of the downloaded one")
        ->type_name("FILE");
}

/// All commands. Parsing puts the chosen one into `action`.
struct Commands
{
    CLI::App app{"Summarises any text with a language model that runs on this machine.",
                 "pithwise"};
    SummaryRequest request;
    HotkeyCommand::Request hotkey;
    std::string model; // for the tray application
    std::function<int()> action;

    Commands()
    {
        app.require_subcommand(0, 1);
        action = [this] { return ApplicationCommand::run(model); };
        addSummarize();
        addRead();
        addPlan();
        addHotkey();
        addToggle();
        addModel();
        addHelpers();
        addApplicationModel();
        addVersion(app);
        // Last, because commands made later would take over this footer.
        app.footer("Without a command, pithwise is an application in the desktop's tray.");
    }

private:
    /// Adds the option to `command` and all commands below it.
    static void addVersion(CLI::App& command)
    {
        command.set_version_flag("--version", "pithwise " PITHWISE_VERSION);
        for (CLI::App* below : command.get_subcommands({}))
            addVersion(*below);
    }

    void addSummarize()
    {
        CLI::App* command = app.add_subcommand("summarize", "Print the summary of a text");
        addRequest(*command, request);
        addModelFile(*command, request.model);
        command->add_flag("--copy", request.isCopied, "Also put the summary on the clipboard");
        command->footer("The model is downloaded first if it is missing. A stand-in made by "
                        "standin-model is no language\nmodel: it spells a fixed text whatever the "
                        "source.");
        command->callback([this] { action = [this] { return SummarizeCommand::run(request); }; });
    }

    void addRead()
    {
        CLI::App* command = app.add_subcommand("read", "Print the text that would be summarised");
        addSource(*command, request);
        command->callback([this] { action = [this] { return ReadCommand::run(request); }; });
    }

    void addPlan()
    {
        CLI::App* command = app.add_subcommand(
            "plan", "Print as JSON what a summary would ask of the model, without running it");
        addRequest(*command, request);
        command->callback([this] { action = [this] { return PlanCommand::run(request); }; });
    }

    void addHotkey()
    {
        CLI::App* command = app.add_subcommand(
            "hotkey", "Print the summary of the selected text, else of the front window, else of "
                      "the clipboard; without options, have the running application show it");
        addModelFile(*command, hotkey.model);
        command->add_flag("--note", hotkey.appendsToNote,
                          "Also append the summary to the note of the day");
        command->add_flag("--copy", hotkey.copies, "Also put the summary on the clipboard");
        command->callback([this, command] {
            const bool mayAsk = command->count_all() == 1; // nothing but the command itself
            action = [this, mayAsk] {
                if (mayAsk && ApplicationCommand::askForHotkey())
                    return 0;
                return HotkeyCommand::run(hotkey);
            };
        });
    }

    void addToggle()
    {
        app.add_subcommand("toggle", "Show or hide the running application's window")
            ->callback([this] { action = ApplicationCommand::toggle; });
    }

    /// Adds the option --model for the application itself. The commands have their own.
    void addApplicationModel()
    {
        addModelFile(app, model);
        for (CLI::App* command : app.get_subcommands({}))
            command->excludes(app.get_option("--model"));
    }

    /// Adds commands with which the program starts itself. They are not for users.
    void addHelpers()
    {
        app.add_subcommand(ApplicationCommand::askingCommand)->group("")->callback([this] {
            action = ApplicationCommand::tellHotkeyAnswer;
        });
        app.add_subcommand(DesktopSource::command)->group("")->callback([this] {
            action = DesktopSource::serveSelection;
        });
        CLI::App* command = app.add_subcommand(ClipboardOffer::command)->group("");
        const CLI::Option* contents = command->add_flag("--contents");
        command->callback([this, contents] {
            action = [isText = contents->count() == 0] { return ClipboardOffer::serve(isText); };
        });
        command = app.add_subcommand(DocumentProcess::command)->group("");
        command->add_option("FILE", request.source)->required();
        command->callback([this] {
            action = [this] { return DocumentProcess::serve(request.source, *stdout); };
        });
    }

    void addModel()
    {
        CLI::App* command = app.add_subcommand("model", "The language model's file");
        command->require_subcommand(1);
        const auto add = [&](const char* name, const char* description, int (*run)()) {
            command->add_subcommand(name, description)->callback([this, run] { action = run; });
        };
        add("status", "Print whether the model is there", ModelCommand::status);
        add("path", "Print where the model is kept", ModelCommand::path);
        add("download", "Download the model, also over a damaged one", ModelCommand::download);
    }
};

/// The usage line of the innermost command that was given.
std::string usage(const CLI::App& app)
{
    const std::string help = app.help();
    const std::size_t begin = help.find("Usage:");
    return help.substr(begin, help.find('\n', begin) - begin);
}

void printError(std::string sentence)
{
    std::cerr << "pithwise: " << TextOutput::oneLine(std::move(sentence)) << "\n";
}

int runAction(const std::function<int()>& action)
{
    try {
        return action();
    } catch (const Interrupted& interrupted) {
        return interrupted.exitStatus;
    } catch (const std::exception& error) {
        printError(sentenceOf(error));
    }
    return exitError;
}

} // namespace

int run(int argc, char** argv)
{
    Commands commands;
    try {
        commands.app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) // --help, --version
            return commands.app.exit(error);
        printError(error.what());
        std::cerr << usage(commands.app) << "\n";
        return exitUsage;
    }
    return runAction(commands.action);
}

} // namespace CommandLine
