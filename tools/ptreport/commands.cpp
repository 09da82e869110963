#include "commands.h"

#include <utility>

namespace ptreport {

const std::vector<Command>& commands() {
    static const std::vector<Command> all = [] {
        std::vector<Command> list = reportCommands();
        for (std::vector<Command> more : {exportCommands(), checkCommands()}) {
            for (Command& command : more) {
                list.push_back(std::move(command));
            }
        }
        return list;
    }();
    return all;
}

}  // namespace ptreport
