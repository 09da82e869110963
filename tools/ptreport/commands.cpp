#include "commands.h"

#include <utility>

namespace ptreport {

const std::vector<Command>& commands() {
    static const std::vector<Command> all = [] {
        std::vector<Command> list = reportCommands();
        for (Command& command : checkCommands()) {
            list.push_back(std::move(command));
        }
        return list;
    }();
    return all;
}

}  // namespace ptreport
