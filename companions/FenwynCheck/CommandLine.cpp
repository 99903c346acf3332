#include "CommandLine.h"

#include <cwchar>

#include "ScreenBrightness.h"

namespace machine {

namespace {

// Walks the arguments; a switch that needs a value takes the next one.
class CParser {
 public:
    explicit CParser(std::span<const std::wstring> arguments) : m_arguments(arguments) {}

    bool parse() {
        while (m_bGood && m_uNext < m_arguments.size()) {
            _takeSwitch(m_arguments[m_uNext++]);
        }
        return m_bGood && m_uCommands == 1 && _fits();
    }

    [[nodiscard]] Options& options() { return m_options; }

 private:
    void _takeSwitch(const std::wstring& word) {
        if (word == L"--machine") {
            _command(Command::CheckMachine);
        } else if (word == L"--register") {
            _command(Command::Register);
        } else if (word == L"--unregister") {
            _command(Command::Unregister);
        } else if (word == L"--forgive") {
            _command(Command::Forgive);
        } else if (word == L"--ask" || word == L"--inspect" || word == L"--try-one") {
            _command(word == L"--ask" ? Command::Ask : word == L"--inspect" ? Command::Inspect : Command::Try);
            m_options.function = _value();
            m_options.plugin = _value();
        } else if (word == L"--screens") {
            _command(Command::ListScreens);
        } else if (word == L"--allow-screen" || word == L"--forbid-screen") {
            _command(word == L"--allow-screen" ? Command::AllowScreen : Command::ForbidScreen);
            m_options.screen = _value();
        } else if (word == fenwyn::kScreenBrightness) {
            _command(Command::ScreenBrightness);
            m_options.screen = _value();
            _takePercentage();
        } else if (word == L"--try") {
            m_options.tryChanges = true;
        } else if (word == L"--user") {
            m_options.forUser = true;
        } else if (word == L"--replace") {
            m_options.replace = true;
        } else if (word == L"--elevated") {
            m_options.elevated = true;
        } else if (word == L"--report") {
            m_options.reportFile = _value();
        } else if (word == L"--functions") {
            m_options.functions = _value();
        } else {
            m_bGood = false;
        }
    }

    void _command(Command command) {
        m_options.command = command;
        ++m_uCommands;
    }

    std::wstring _value() {
        if (m_uNext == m_arguments.size() || m_arguments[m_uNext].empty() || m_arguments[m_uNext].starts_with(L"--")) {
            m_bGood = false;
            return {};
        }
        return m_arguments[m_uNext++];
    }

    void _takePercentage() {
        if (m_uNext == m_arguments.size()) {
            return;
        }
        const std::wstring word = _value();
        wchar_t* end = nullptr;
        m_options.percentage = std::wcstoul(word.c_str(), &end, 10);
        m_bGood = m_bGood && *end == L'\0' && *m_options.percentage <= fenwyn::kFullBrightness;
    }

    [[nodiscard]] bool _fits() const {
        const bool checks = m_options.command == Command::CheckMachine;
        const bool registers = m_options.command == Command::Register;
        const bool writes = registers || m_options.command == Command::Unregister;
        return (checks || (!m_options.tryChanges && m_options.reportFile.empty())) &&
               (writes || (!m_options.forUser && !m_options.elevated)) &&
               (registers || (!m_options.replace && m_options.functions.empty()));
    }

    std::span<const std::wstring> m_arguments;
    std::size_t m_uNext = 0;
    std::size_t m_uCommands = 0;
    bool m_bGood = true;
    Options m_options;
};

}  // namespace

std::optional<Options> parseCommandLine(std::span<const std::wstring> arguments) {
    CParser parser(arguments);
    return parser.parse() ? std::optional<Options>(parser.options()) : std::nullopt;
}

std::wstring usage() {
    return L"FenwynCheck --machine [--try] [--report FILE]\n"
           L"    Goes through the functions on this machine without changing anything: which are offered, and why\n"
           L"    the others are not, their present state, how long each call took, and which keys.\n"
           L"    --try also makes each harmless change and takes it back; it asks before each.\n"
           L"    --report writes the same as text, to send along with a fault.\n"
           L"FenwynCheck --register [--user] [--replace] [--functions \"Mute;Lock;\"]\n"
           L"    Writes a function list of what this machine offers, for the machine (asks for administrator rights\n"
           L"    once) or, with --user, for this user only. --replace: also where there is one. --functions: these,\n"
           L"    whether the machine offers them or not; a name that is none of a function is refused.\n"
           L"FenwynCheck --unregister [--user]\n"
           L"    Removes what --register wrote and nobody changed since.\n"
           L"FenwynCheck --ask FUNCTION PLUG-IN\n"
           L"    For other programs: one plug-in. Writes outcome=offered, outcome=declined or outcome=faulty, and in "
           L"the\n"
           L"    next line why=, with the plug-in's reason or the fault. The plug-in runs in a process of its own, "
           L"for\n"
           L"    20 seconds at most. Exit code 4: declined.\n"
           L"FenwynCheck --screens\n"
           L"    Lists the active screens. --allow-screen NUMBER (or path): Fenwyn may change the brightness of this\n"
           L"    external screen over its cable. Some screens answer slowly or fail at that, so none is changed "
           L"unless\n"
           L"    you allow it. --forbid-screen NUMBER (or path) takes it back.\n"
           L"FenwynCheck --forgive\n"
           L"    Forgives the plug-ins that ended Fenwyn: those that it has set aside are loaded again at its next "
           L"start.\n"
           L"Exit codes: 0 all is well; 1 a plug-in is at fault, or a change had no effect; 2 wrong use; 3 something\n"
           L"could not be written; 4 there is nothing to check or to register, a list is there already,\n"
           L"or there is no such screen.\n";
}

}  // namespace machine
