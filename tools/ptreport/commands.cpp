#include "commands.h"

namespace ptreport {

const std::vector<Command>& commands() {
    static const std::vector<Command> all = [] {
        std::vector<Command> list = reportCommands();
        return list;
    }();
    return all;
}

}  // namespace ptreport
