// ptshell: the host shell. It loads the tracer module as the host does and runs statements
// typed at a prompt, given with -e, or read from a script file.

#include <pt_platform/module.h>

#include <editline/readline.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "completion.h"
#include "interrupts.h"
#include "session.h"

namespace {

constexpr const char* kUsage =
    "usage: ptshell [--module PATH] [-e STATEMENTS | FILE]\n"
    "\n"
    "Runs statements of the host's script language with the tracer module loaded, e.g.\n"
    "    ptshell -e \"PerfTools.Tracer.enable('g', true)\"\n"
    "\n"
    "  -e STATEMENTS   run the statements and exit\n"
    "  FILE            run a script file and exit\n"
    "  --module PATH   load this build of libperformance_tracer.so\n"
    "  --help          show this text\n"
    "  --version       show the version\n"
    "\n"
    "Without -e or FILE, ptshell reads statements at the prompt '>> ', with line editing,\n"
    "history and Tab completion; 'help' lists what it understands. In -e and script mode\n"
    "the first uncaught error ends the run with exit status 1.\n"
    "\n"
    "Ctrl-C stops the running statement with the error \"Interrupted\", which try can catch;\n"
    "variables and the tracer's data stay. At the prompt it drops the line being typed; exit\n"
    "or Ctrl-D leaves. No value that the shell makes may hold more than 1 GiB; a value that\n"
    "would is refused before it is made.\n";

std::filesystem::path executableFolder() {
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::filesystem::current_path() : self.parent_path();
}

/// The module beside the shell: in the same folder, in ../lib once installed, or where this
/// build put it.
std::string defaultModule() {
    const std::filesystem::path folder = executableFolder();
    for (const std::filesystem::path& candidate :
         {folder / "libperformance_tracer.so", folder / ".." / "lib" / "libperformance_tracer.so",
          std::filesystem::path(PT_BUILD_MODULE_PATH)}) {
        if (std::filesystem::exists(candidate)) {
            return candidate.string();
        }
    }
    return (folder / ".." / "lib" / "libperformance_tracer.so").string();
}

std::string readFile(const std::string& path, bool& ok) {
    std::ifstream in(path);
    ok = static_cast<bool>(in);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// Tab completion: the session tells the names; the line editor asks for them one at a time.
const ptshell::Session* gCompletingSession = nullptr;
std::vector<std::string> gCompletions;

char* nextCompletion(const char*, int state) {
    static std::size_t next = 0;
    next = state == 0 ? 0 : next;
    return next < gCompletions.size() ? strdup(gCompletions[next++].c_str()) : nullptr;
}

char** completeAtCursor(const char* word, int start, int end) {
    rl_attempted_completion_over = 1;  // never file names
    gCompletions = gCompletingSession->completions(rl_line_buffer, static_cast<std::size_t>(start),
                                                   static_cast<std::size_t>(end));
    // A name that goes on ("PerfTools.Tracer.", a parameter's closing quote) gets no blank.
    const bool open = gCompletions.size() == 1 &&
                      (gCompletions[0].back() == '.' || gCompletions[0].back() == '\'');
    rl_completion_append_character = open ? '\0' : ' ';
    return rl_completion_matches(word, nextCompletion);
}

/// Reads statements line by line until the input ends or exit is called; a statement that
/// spans lines (an open block or bracket) is run once it is complete.
int interactive(ptshell::Session& session) {
    const bool terminal = isatty(STDIN_FILENO);
    std::string history;
    if (terminal) {
        // Typed text reaches the line editor in the terminal's own encoding.
        std::setlocale(LC_CTYPE, "");
        rl_getc_function = ptshell::readTypedCharacter;
        gCompletingSession = &session;
        rl_attempted_completion_function = completeAtCursor;
        static char breaks[sizeof ptshell::kWordBreaks];
        std::memcpy(breaks, ptshell::kWordBreaks, sizeof breaks);
        rl_completer_word_break_characters = breaks;
        if (const char* home = std::getenv("HOME")) {
            history = std::string(home) + "/.ptshell_history";
            read_history(history.c_str());
        }
    }
    std::string pending;
    int status = 0;
    for (;;) {
        std::string line;
        if (terminal) {
            char* read = readline(pending.empty() ? ">> " : ".. ");
            if (!read && ptshell::interruptFlag().exchange(false)) {
                std::cout << "^C" << std::endl;  // the line, and any open block, are dropped
                pending.clear();
                continue;
            }
            if (!read) {
                std::cout << std::endl;
                break;
            }
            line = read;
            std::free(read);
            if (!line.empty()) {
                add_history(line.c_str());
            }
        } else if (!std::getline(std::cin, line)) {
            break;
        }
        pending += line + "\n";
        if (!ptshell::Session::isComplete(pending)) {
            continue;
        }
        ptshell::interruptFlag() = false;  // a Ctrl-C while nothing ran stops nothing
        const ptshell::Session::Outcome outcome = session.run(pending, status);
        pending.clear();
        if (outcome == ptshell::Session::Outcome::Exited) {
            break;
        }
    }
    if (!pending.empty()) {
        session.run(pending, status);  // reports what is missing
    }
    if (terminal && !history.empty()) {
        write_history(history.c_str());
    }
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    std::string module;
    std::string statements;
    std::string script;
    bool haveStatements = false;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            std::cout << kUsage;
            return 0;
        }
        if (arg == "--version") {
            std::cout << "ptshell " << PT_VERSION << std::endl;
            return 0;
        }
        if ((arg == "--module" || arg == "-e") && i + 1 >= argc) {
            std::cerr << "ptshell: " << arg << " needs a value\n" << kUsage;
            return 2;
        }
        if (arg == "--module") {
            module = argv[++i];
        } else if (arg == "-e") {
            statements = argv[++i];
            haveStatements = true;
        } else if (!arg.empty() && arg[0] == '-') {
            std::cerr << "ptshell: unknown option " << arg << "\n" << kUsage;
            return 2;
        } else if (script.empty()) {
            script = arg;
        } else {
            std::cerr << "ptshell: one script at a time\n";
            return 2;
        }
    }

    hvLoadedModule loaded;
    std::string error;
    if (!hvLoadModule(module.empty() ? defaultModule() : module, loaded, error)) {
        std::cerr << "ptshell: cannot load the tracer module: " << error << std::endl;
        return 2;
    }

    const bool scriptRun = haveStatements || !script.empty();
    ptshell::catchInterrupts(scriptRun);
    ptshell::EvalOptions options;
    options.interrupt = &ptshell::interruptFlag();
    ptshell::Session session(std::cout, std::cerr, options);
    int status = 0;
    if (scriptRun) {
        std::string text = statements;
        if (!haveStatements) {
            bool ok = false;
            text = readFile(script, ok);
            if (!ok) {
                std::cerr << "ptshell: cannot read " << script << std::endl;
                return 2;
            }
        }
        const ptshell::Session::Outcome outcome = session.run(text, status);
        hvTerminateModule(loaded);
        return outcome == ptshell::Session::Outcome::Failed ? 1 : status;
    }
    status = interactive(session);
    hvTerminateModule(loaded);
    return status;
}
