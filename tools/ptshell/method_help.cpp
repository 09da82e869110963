#include "method_help.h"

#include <algorithm>
#include <cctype>

namespace ptshell {

namespace {

const char* const kTracer = "PerfTools.Tracer.";

std::vector<ParameterHelp> reportPairs(bool withMeta) {
    std::vector<ParameterHelp> pairs = {
        {"htmlfile", "", "the page to write (required)"},
        {"grouping", "'GLOBAL'", "show this grouping and those below it; 'GLOBAL' shows all"},
        {"hvffile", "", "a saved run; without it, the points in memory"},
    };
    if (withMeta) {
        pairs.push_back({"showmeta", "true", "show the data's meta information in the header"});
    }
    pairs.push_back({"metric", "'time'", "'time', 'basicmemory' or 'detailedmemory'"});
    return pairs;
}

std::vector<ParameterHelp> differencePairs(bool startup) {
    std::vector<ParameterHelp> pairs = {
        {"htmlfile", startup ? "'KsStartupDiff.html'" : "",
         startup ? "the page to write" : "the page to write (required)"},
        {"lhsfile", "", "the baseline run; without it, the points in memory"},
        {"rhsfile", "", "the other run; without it, the points in memory (one file at least)"},
        {"lhslabel", "'LHS'", "the baseline's label"},
        {"rhslabel", "'RHS'", "the other run's label"},
    };
    if (!startup) {
        pairs.push_back({"grouping", "'GLOBAL'", "compare this grouping and those below it"});
        pairs.push_back({"metric", "'time'", "'time', 'basicmemory' or 'detailedmemory'"});
    }
    return pairs;
}

const std::vector<ParameterHelp> kSelectionPairs = {
    {"grouping", "'GLOBAL'", "a grouping (with those below it) or a cell of groupings"},
    {"model", "", "a model, or a cell of models; repeated pairs add models"},
};

std::vector<MethodHelp> makeTable() {
    auto tracer = [](const char* name) { return std::string(kTracer) + name; };
    return {
        {tracer("enable"),
         "enable(grouping, enable)",
         "Switches a grouping and everything below it on or off and answers the new state; with "
         "the grouping alone, answers whether it is traced.",
         false,
         {{"grouping", "", "the grouping's name"}, {"enable", "", "true or false (optional)"}},
         "PerfTools.Tracer.enable('Compile', true)"},
        {tracer("enableGlobalLogging"),
         "enableGlobalLogging(enable)",
         "Traces every grouping while on, enabled or not, and answers the new state.",
         false,
         {{"enable", "", "true or false"}},
         "PerfTools.Tracer.enableGlobalLogging(true)"},
        {tracer("enableKsStartupLogging"),
         "enableKsStartupLogging(enable)",
         "Switches the grouping \"Kestrune Startup\" on or off and answers the new state.",
         false,
         {{"enable", "", "true or false"}},
         "PerfTools.Tracer.enableKsStartupLogging(true)"},
        {tracer("enableDetailedMemStats"),
         "enableDetailedMemStats(enable)",
         "Detailed memory statistics: a feature of platforms that measure memory; here it "
         "always raises WindowsOnlyFeature.",
         false,
         {{"enable", "", "true or false"}},
         "PerfTools.Tracer.enableDetailedMemStats(true)"},
        {tracer("addGrouping"),
         "addGrouping(grouping, subGroupings)",
         "Adds a grouping with sub-groupings; enabling the grouping enables them too.",
         false,
         {{"grouping", "", "the parent's name"}, {"subGroupings", "", "a cell of names"}},
         "PerfTools.Tracer.addGrouping('Build', {'Compile', 'Link'})"},
        {tracer("removeGrouping"),
         "removeGrouping(grouping)",
         "Removes a grouping and everything below it; its points stay.",
         false,
         {{"grouping", "", "the grouping's name"}},
         "PerfTools.Tracer.removeGrouping('Build')"},
        {tracer("logOrviaData"),
         "logOrviaData(grouping, phase, start)",
         "Logs the start (true) or the end (false) of a host-language phase.",
         false,
         {{"grouping", "", "the grouping's name"},
          {"phase", "", "the phase's name"},
          {"start", "", "true at the start, false at the end"}},
         "PerfTools.Tracer.logOrviaData('Compile', 'parse', true)"},
        {tracer("logKestruneData"),
         "logKestruneData(grouping, model, target, phase, start)",
         "Logs the start or the end of a phase of a block-diagram model.",
         false,
         {{"grouping", "", "the grouping's name"},
          {"model", "", "the model's name"},
          {"target", "", "the target's name"},
          {"phase", "", "the phase's name"},
          {"start", "", "true at the start, false at the end"}},
         "PerfTools.Tracer.logKestruneData('Build', 'engine', 'sim', 'update', true)"},
        {tracer("logYlvaneData"),
         "logYlvaneData(grouping, model, target, machine, chart, phase, start)",
         "Logs the start or the end of a phase of a state chart.",
         false,
         {{"grouping", "", "the grouping's name"},
          {"model", "", "the model's name"},
          {"target", "", "the target's name"},
          {"machine", "", "the state machine's name"},
          {"chart", "", "the chart's name"},
          {"phase", "", "the phase's name"},
          {"start", "", "true at the start, false at the end"}},
         "PerfTools.Tracer.logYlvaneData('Build', 'engine', 'sim', 'Machine', 'Chart', 'step', "
         "true)"},
        {tracer("logKsStartupData"),
         "logKsStartupData(phase, start)",
         "Logs the start or the end of a phase into the grouping \"Kestrune Startup\".",
         false,
         {{"phase", "", "the phase's name"}, {"start", "", "true at the start, false at the end"}},
         "PerfTools.Tracer.logKsStartupData('load libraries', true)"},
        {tracer("setStatisticsTypeForModel"),
         "setStatisticsTypeForModel(model, statisticsType)",
         "Names the kind of statistics a model's later points carry.",
         false,
         {{"model", "", "the model's name"}, {"statisticsType", "", "the statistics type"}},
         "PerfTools.Tracer.setStatisticsTypeForModel('engine', 'Normal')"},
        {tracer("clearRawData"),
         "clearRawData('grouping', G, 'model', M, 'target', T)",
         "Without arguments, empties the raw points and the name tables; with pairs, removes the "
         "points of a grouping, a model, or a grouping's model (and target).",
         true,
         {{"grouping", "", "the grouping whose points go"},
          {"model", "", "the model whose points go"},
          {"target", "", "with grouping and model: the target"}},
         "PerfTools.Tracer.clearRawData('grouping', 'Compile')"},
        {tracer("getRawData"),
         "getRawData()",
         "The raw points as a cell row, one cell row per point, as value files hold them.",
         false,
         {},
         "raw = PerfTools.Tracer.getRawData();"},
        {tracer("getProcessedData"), "getProcessedData('grouping', G, 'model', M)",
         "The phases of the raw points, one structure per phase, with times, memory, depth, "
         "outline number and children.",
         true, kSelectionPairs, "p = PerfTools.Tracer.getProcessedData('grouping', {'Build'});"},
        {tracer("getAggregateProcessedData"),
         "getAggregateProcessedData('grouping', G, 'model', M)",
         "One structure per phase name: its count and the sums of its own times.", true,
         kSelectionPairs, "a = PerfTools.Tracer.getAggregateProcessedData('model', 'engine');"},
        {tracer("saveToFile"),
         "saveToFile(file)",
         "Writes the raw points, this machine's system information and the root folder to a "
         "value file (.hvf).",
         false,
         {{"file", "", "the value file"}},
         "PerfTools.Tracer.saveToFile('run.hvf')"},
        {tracer("saveKsStartupData"),
         "saveKsStartupData(file)",
         "Writes the points of the grouping \"Kestrune Startup\" to a value file.",
         false,
         {{"file", "'KsStartupData.hvf'", "the value file"}},
         "PerfTools.Tracer.saveKsStartupData('startup.hvf')"},
        {tracer("loadTracerData"),
         "loadTracerData(file)",
         "Replaces the raw points in memory with those of a value file.",
         false,
         {{"file", "", "the value file"}},
         "PerfTools.Tracer.loadTracerData('run.hvf')"},
        {tracer("generateHTMLReport"), "generateHTMLReport('htmlfile', FILE, ...)",
         "Writes the Detail page: Aggregate, Call Tree, Details, MemChart (detailed memory) and "
         "System Info tabs.",
         true, reportPairs(true),
         "PerfTools.Tracer.generateHTMLReport('htmlfile', 'run.html', 'hvffile', 'run.hvf')"},
        {tracer("generateAggregateReport"), "generateAggregateReport('htmlfile', FILE, ...)",
         "Writes the Aggregate page: every phase once, with its count and times.", true,
         reportPairs(true), "PerfTools.Tracer.generateAggregateReport('htmlfile', 'agg.html')"},
        {tracer("generateKsStartupReport"),
         "generateKsStartupReport('htmlfile', FILE, ...)",
         "Writes the Detail page of the grouping \"Kestrune Startup\".",
         true,
         {{"htmlfile", "'KsStartup.html'", "the page to write"},
          {"hvffile", "", "a saved run; without it, the points in memory"},
          {"metric", "'time'", "'time', 'basicmemory' or 'detailedmemory'"}},
         "PerfTools.Tracer.generateKsStartupReport('hvffile', 'run.hvf')"},
        {tracer("generateDifferenceReport"), "generateDifferenceReport('htmlfile', FILE, ...)",
         "Writes the Difference page: the rows of two runs aligned, with their deviations.", true,
         differencePairs(false),
         "PerfTools.Tracer.generateDifferenceReport('htmlfile', 'diff.html', 'lhsfile', "
         "'old.hvf', 'rhsfile', 'new.hvf')"},
        {tracer("generateAggregateDifferenceReport"),
         "generateAggregateDifferenceReport('htmlfile', FILE, ...)",
         "Writes the Aggregate Difference page: every phase once, both runs side by side.", true,
         differencePairs(false),
         "PerfTools.Tracer.generateAggregateDifferenceReport('htmlfile', 'aggdiff.html', "
         "'lhsfile', 'old.hvf')"},
        {tracer("generateKsStartupDifferenceReport"),
         "generateKsStartupDifferenceReport('lhsfile', FILE, ...)",
         "Writes the Difference page of the grouping \"Kestrune Startup\".", true,
         differencePairs(true),
         "PerfTools.Tracer.generateKsStartupDifferenceReport('lhsfile', 'old.hvf', 'rhsfile', "
         "'new.hvf')"},
        {tracer("diagnosticReport"),
         "diagnosticReport('htmlfile', FILE, ...)",
         "Writes a plain table of the raw points in logged order, the unmatched ones in red: "
         "the way into broken instrumentation. Names are taken as typed.",
         true,
         {{"htmlfile", "", "the page to write (required)"},
          {"grouping", "'GLOBAL'", "the points of this grouping only"},
          {"hvffile", "", "a saved run; without it, the points in memory"}},
         "PerfTools.Tracer.diagnosticReport('htmlfile', 'mydiag.html')"},
        {tracer("setUseDetailedExceptionDiagnostics"),
         "setUseDetailedExceptionDiagnostics(flag)",
         "Asks the host for detailed stack diagnostics in its errors (hidden from listings).",
         false,
         {{"flag", "", "true or false"}},
         "PerfTools.Tracer.setUseDetailedExceptionDiagnostics(true)"},
        {"PerfTools.kssvStringTableDoGarbageCollection",
         "kssvStringTableDoGarbageCollection()",
         "Asks the host to collect its string table's garbage now.",
         false,
         {},
         "PerfTools.kssvStringTableDoGarbageCollection()"},
        {"PerfTools.kssvStringTableDisableGarbageCollection",
         "kssvStringTableDisableGarbageCollection()",
         "Asks the host to stop collecting its string table's garbage.",
         false,
         {},
         "PerfTools.kssvStringTableDisableGarbageCollection()"},
        {"PerfTools.kssvStringTableEnableGarbageCollection",
         "kssvStringTableEnableGarbageCollection()",
         "Asks the host to collect its string table's garbage again.",
         false,
         {},
         "PerfTools.kssvStringTableEnableGarbageCollection()"},
    };
}

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// Folds a paragraph to lines of at most width characters after the indent.
std::string wrap(const std::string& text, std::size_t indent, std::size_t width = 78) {
    std::string out;
    std::string line;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find(' ', start);
        if (end == std::string::npos) {
            end = text.size();
        }
        const std::string word = text.substr(start, end - start);
        if (!line.empty() && indent + line.size() + 1 + word.size() > width) {
            out += std::string(indent, ' ') + line + "\n";
            line.clear();
        }
        line += (line.empty() ? "" : " ") + word;
        start = end + 1;
    }
    if (!line.empty()) {
        out += std::string(indent, ' ') + line + "\n";
    }
    return out;
}

}  // namespace

const std::vector<MethodHelp>& methodHelp() {
    static const std::vector<MethodHelp> table = makeTable();
    return table;
}

const MethodHelp* findMethodHelp(const std::string& name) {
    for (const MethodHelp& method : methodHelp()) {
        if (method.qualifiedName == name || method.qualifiedName == kTracer + name) {
            return &method;
        }
    }
    return nullptr;
}

std::string helpText(const MethodHelp& method) {
    const bool isTracer = method.qualifiedName.rfind(kTracer, 0) == 0;
    std::string text = (isTracer ? std::string(kTracer) : std::string("PerfTools.")) +
                       method.signature + "\n\n" + wrap(method.description, 2);
    if (!method.parameters.empty()) {
        text += method.nameValue ? "\nName-value pairs, in any order:\n" : "\nParameters:\n";
        for (const ParameterHelp& p : method.parameters) {
            std::string head = "  " + (method.nameValue ? "'" + p.name + "'" : p.name);
            if (!p.defaultValue.empty()) {
                head += " = " + p.defaultValue;
            }
            text += head;
            text +=
                head.size() < 28 ? std::string(28 - head.size(), ' ') : "\n" + std::string(28, ' ');
            text += p.description + "\n";
        }
    }
    return text + "\nExample:\n  " + method.example + "\n";
}

std::string helpOverview() {
    std::string text =
        "Statements end at a line break, ';' (which hides the result) or ','. There are\n"
        "variables, numbers, 'text' ('' for a quote), true/false, [1 2; 3 4], {1, 'a'}, a:b,\n"
        "arithmetic and comparisons, x{i}, x(i), s.field, for ... end and\n"
        "try ... catch err ... end (err.id, err.message).\n"
        "\n"
        "Built-ins: print typeof size count isempty fields struct sleep methods help exit,\n"
        "and the conversions double logical char int8 ... uint64.\n"
        "\n"
        "Methods of PerfTools.Tracer and functions of PerfTools ('help NAME' tells more):\n";
    for (const MethodHelp& method : methodHelp()) {
        text += "  " + method.signature + "\n";
    }
    return text + "\nTab completes names: variables, built-ins, methods and their parameters.\n";
}

std::string unknownNameHint(const MethodHelp& method, const std::vector<std::string>& names,
                            bool foldCase) {
    if (!method.nameValue) {
        return {};
    }
    for (const std::string& name : names) {
        const std::string key = foldCase ? lower(name) : name;
        const bool known = std::any_of(method.parameters.begin(), method.parameters.end(),
                                       [&](const ParameterHelp& p) { return p.name == key; });
        if (known) {
            continue;
        }
        std::string valid;
        for (std::size_t i = 0; i < method.parameters.size(); ++i) {
            valid += (i == 0                              ? ""
                      : i + 1 == method.parameters.size() ? " and "
                                                          : ", ") +
                     ("'" + method.parameters[i].name + "'");
        }
        const std::string shortName =
            method.qualifiedName.substr(method.qualifiedName.rfind('.') + 1);
        return "'" + name + "' is not a name that " + shortName + " takes; it takes " + valid + ".";
    }
    return {};
}

}  // namespace ptshell
