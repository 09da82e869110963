// The shell's own functions.

#include <pt_platform/vos.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

#include "display.h"
#include "evaluator.h"
#include "method_help.h"
#include "values.h"

namespace ptshell {

namespace {

using Args = std::vector<Operand>;

void expectArgs(const Args& args, std::size_t min, std::size_t max) {
    if (args.size() < min || args.size() > max) {
        const std::string wanted =
            min == max ? std::to_string(min) : std::to_string(min) + " to " + std::to_string(max);
        fail("ptshell:ArgumentCount",
             "Takes " + wanted + " arguments, but " + std::to_string(args.size()) + " were given.");
    }
}

std::string textArgument(const hvArray* value, const char* what) {
    if (!hvIsCharVector(value)) {
        fail("ptshell:WrongType", std::string(what) + " must be text.");
    }
    return hvArrayToStdString(value);
}

hvUniqueArray cellRow(const std::vector<std::string>& texts) {
    hvUniqueArray row(hvCreateCellMatrix(1, texts.size()));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        hvSetCell(row.get(), i, hvCreateString(texts[i]));
    }
    return row;
}

Evaluator::Builtin conversion(hvClassID classID) {
    return [classID](Evaluator& evaluator, Args& args) {
        expectArgs(args, 1, 1);
        // A conversion to a wider class can take more room than its argument.
        evaluator.checkBytes(newValueBytes(classID, hvGetNumberOfElements(args[0].get())));
        return convertTo(args[0].get(), classID);
    };
}

hvUniqueArray print(Evaluator& evaluator, Args& args) {
    expectArgs(args, 1, 1);
    evaluator.out() << printValue(args[0].get());
    return nullptr;
}

hvUniqueArray typeOf(Evaluator&, Args& args) {
    expectArgs(args, 1, 1);
    return hvUniqueArray(hvCreateString(hvClassName(hvGetClassID(args[0].get()))));
}

hvUniqueArray size(Evaluator&, Args& args) {
    expectArgs(args, 1, 1);
    const std::size_t n = hvGetNumberOfDimensions(args[0].get());
    const std::size_t* dims = hvGetDimensions(args[0].get());
    return doubleRow(std::vector<double>(dims, dims + n));
}

hvUniqueArray count(Evaluator&, Args& args) {
    expectArgs(args, 1, 1);
    return hvUniqueArray(
        hvCreateDoubleScalar(static_cast<double>(hvGetNumberOfElements(args[0].get()))));
}

hvUniqueArray isEmpty(Evaluator&, Args& args) {
    expectArgs(args, 1, 1);
    return hvUniqueArray(hvCreateLogicalScalar(hvIsEmpty(args[0].get())));
}

hvUniqueArray fields(Evaluator&, Args& args) {
    expectArgs(args, 1, 1);
    if (!hvIsStruct(args[0].get())) {
        fail("ptshell:WrongType", "Only a structure has fields.");
    }
    std::vector<std::string> names;
    for (int f = 0; f < hvGetNumberOfFields(args[0].get()); ++f) {
        names.push_back(hvGetFieldNameByNumber(args[0].get(), f));
    }
    return cellRow(names);
}

hvUniqueArray sleep(Evaluator& evaluator, Args& args) {
    expectArgs(args, 1, 1);
    if (!evaluator.options().allowSleep) {
        fail("ptshell:Disabled", "sleep is switched off in this run.");
    }
    const double seconds = realScalar(args[0].get(), "The time to sleep");
    if (seconds > 0 && seconds < 1e6) {
        // In short steps, so that an interrupt ends the wait.
        using Clock = std::chrono::steady_clock;
        const Clock::time_point until = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                                           std::chrono::duration<double>(seconds));
        for (Clock::time_point now = Clock::now(); now < until; now = Clock::now()) {
            evaluator.checkInterrupt();
            std::this_thread::sleep_for(
                std::min<Clock::duration>(until - now, std::chrono::milliseconds(20)));
        }
    }
    return nullptr;
}

hvUniqueArray methods(Evaluator&, Args& args) {
    expectArgs(args, 1, 1);
    return cellRow(vos::visibleMethods(textArgument(args[0].get(), "The class name")));
}

/// help, or help('NAME') for a method or function of PerfTools (its bare method name will do).
hvUniqueArray help(Evaluator& evaluator, Args& args) {
    expectArgs(args, 0, 1);
    if (args.empty()) {
        evaluator.out() << helpOverview();
        return nullptr;
    }
    const std::string name = textArgument(args[0].get(), "The name to explain");
    const MethodHelp* method = findMethodHelp(name);
    if (!method) {
        fail("ptshell:NoHelp",
             "There is no help for '" + name + "'; 'help' alone lists the methods and functions.");
    }
    evaluator.out() << helpText(*method);
    return nullptr;
}

hvUniqueArray exit(Evaluator& evaluator, Args& args) {
    expectArgs(args, 0, 1);
    if (!evaluator.options().allowExit) {
        fail("ptshell:Disabled", "exit is switched off in this run.");
    }
    const double status = args.empty() ? 0.0 : realScalar(args[0].get(), "The exit status");
    throw ExitRequest{static_cast<int>(std::isfinite(status) ? status : 1)};
}

hvUniqueArray makeStruct(Evaluator& evaluator, Args& args) {
    if (args.size() % 2 != 0) {
        fail("ptshell:ArgumentCount", "struct takes names and values in pairs.");
    }
    std::vector<std::string> names;
    std::vector<Operand*> values;
    for (std::size_t i = 0; i < args.size(); i += 2) {
        const std::string name = textArgument(args[i].get(), "A field name");
        const auto existing = std::find(names.begin(), names.end(), name);
        if (existing != names.end()) {
            values[static_cast<std::size_t>(existing - names.begin())] = &args[i + 1];
        } else {
            names.push_back(name);
            values.push_back(&args[i + 1]);
        }
    }
    std::vector<const char*> pointers;
    std::size_t bytes = newValueBytes(hvClassID::Struct, 1, names.size());
    for (std::size_t f = 0; f < names.size(); ++f) {
        pointers.push_back(names[f].c_str());
        bytes = addBytes(bytes, valueBytes(values[f]->get(), evaluator.options().maxValueBytes));
    }
    evaluator.checkBytes(bytes);
    hvUniqueArray out(hvCreateStructMatrix(1, 1, static_cast<int>(names.size()), pointers.data()));
    for (std::size_t f = 0; f < names.size(); ++f) {
        hvSetFieldByNumber(out.get(), 0, static_cast<int>(f), values[f]->take().release());
    }
    evaluator.checkSize(out.get());
    return out;
}

}  // namespace

const std::map<std::string, Evaluator::Builtin>& builtins() {
    static const std::map<std::string, Evaluator::Builtin> table = {
        {"print", print},
        {"typeof", typeOf},
        {"size", size},
        {"count", count},
        {"isempty", isEmpty},
        {"fields", fields},
        {"sleep", sleep},
        {"methods", methods},
        {"help", help},
        {"exit", exit},
        {"quit", exit},
        {"struct", makeStruct},
        {"double", conversion(hvClassID::Double)},
        {"logical", conversion(hvClassID::Logical)},
        {"char", conversion(hvClassID::Char)},
        {"int8", conversion(hvClassID::Int8)},
        {"uint8", conversion(hvClassID::UInt8)},
        {"int16", conversion(hvClassID::Int16)},
        {"uint16", conversion(hvClassID::UInt16)},
        {"int32", conversion(hvClassID::Int32)},
        {"uint32", conversion(hvClassID::UInt32)},
        {"int64", conversion(hvClassID::Int64)},
        {"uint64", conversion(hvClassID::UInt64)},
    };
    return table;
}

}  // namespace ptshell
