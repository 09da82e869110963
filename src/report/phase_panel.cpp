// The Details tab's markup: the container of its table and the filter and sort panels.

#include "report/fragments.h"
#include "report/panel_markup.h"

#include <vector>

namespace pt::report {

namespace {

std::string filterTable() {
    return panelFilterTable("FilterData", {{"Phase:", "phasename"},
                                           {"Grouping:", "groupingname"},
                                           {"Model:", "modelname"},
                                           {"Target:", "targetname"},
                                           {"Machine:", "machinename"},
                                           {"Chart:", "chartname"}});
}

/// A table of rank inputs, one labelled input a row.
std::string rankTable(const char* caption,
                      const std::vector<std::pair<std::string, std::string>>& rows) {
    std::string table = std::string("<table>\n<caption>") + caption + "</caption>\n";
    for (const auto& [label, id] : rows) {
        table += "<tr>" + panelLabelled(label, panelInput(id, id, "2")) + "</tr>\n";
    }
    return table + "</table>\n";
}

/// The rank inputs of a comparison: a column per figure, a row per side and deviation.
struct FigureColumn {
    const char* heading = "";
    std::string lhsId, rhsId, absId, relId;
    std::string lhsName, rhsName, absName, relName;
};

std::string comparisonRankTable(const char* caption, const char* heading,
                                const std::vector<FigureColumn>& columns,
                                const std::vector<const char*>& rowLabels) {
    std::string table = std::string("<table>\n<caption>") + caption + "</caption>\n";
    if (heading) {
        table += std::string("<tr><th colspan=\"2\">") + heading + "</th></tr>\n";
    } else {
        table += "<tr><td></td>";
        for (const FigureColumn& column : columns) {
            table += std::string("<td class=\"FiltersNameCell\">") + column.heading + "</td>";
        }
        table += "</tr>\n";
    }
    for (std::size_t row = 0; row < rowLabels.size(); ++row) {
        table += std::string("<tr><td class=\"FiltersNameCell\">") + rowLabels[row] + "</td>";
        for (const FigureColumn& column : columns) {
            const std::string* ids[] = {&column.lhsId, &column.rhsId, &column.absId, &column.relId};
            const std::string* names[] = {&column.lhsName, &column.rhsName, &column.absName,
                                          &column.relName};
            table += "<td class=\"FiltersInputCell\">" + panelInput(*ids[row], *names[row], "2") +
                     "</td>";
        }
        table += "</tr>\n";
    }
    return table + "</table>\n";
}

FigureColumn sameNames(const char* heading, const std::string& figure) {
    FigureColumn column;
    column.heading = heading;
    column.lhsId = "Sort_LHS_" + figure;
    column.rhsId = "Sort_RHS_" + figure;
    column.absId = "Sort_" + figure + "AbsDev";
    column.relId = "Sort_" + figure + "RelDev";
    column.lhsName = column.lhsId;
    column.rhsName = column.rhsId;
    column.absName = column.absId;
    column.relName = column.relId;
    return column;
}

std::string metricRankTable(const std::string& metric, bool isComparison) {
    if (!isComparison) {
        if (metric == "time") {
            return rankTable("Time",
                             {{"Self:", "Sort_self"}, {"Self + Child:", "Sort_selfPchild"}});
        }
        if (metric == "basicmemory") {
            return rankTable("Memory", {{"Delta:", "Sort_UsageDelta"},
                                        {"Peak Usage:", "Sort_UsagePeak"},
                                        {"Peak Delta:", "Sort_UsagePeakDelta"},
                                        {"VM Size:", "Sort_Usage"}});
        }
        if (metric == "detailedmemory") {
            return rankTable("Memory", {{"Committed:", "Sort_Committed"},
                                        {"Reserved:", "Sort_Reserved"},
                                        {"DLLs:", "Sort_Dlls"},
                                        {"OS:", "Sort_NonProcess"},
                                        {"Free:", "Sort_Free"}});
        }
        return {};
    }
    if (metric == "time") {
        return comparisonRankTable("Time", "WC Elapsed Time", {sameNames("", "WCSelf")},
                                   {"LHS:", "RHS:", "Abs Dev:", "Rel Dev:"});
    }
    if (metric == "basicmemory") {
        // The second and fourth columns stand under each other's heading; so the panel is.
        return comparisonRankTable(
            "Memory", nullptr,
            {sameNames("Process Usage Delta", "UsageDelta"),
             sameNames("Process Usage", "UsagePeak"),
             sameNames("Peak Usage Delta", "UsagePeakDelta"), sameNames("Peak Usage", "Usage")},
            {"LHS:", "RHS:", "Abs Dev:", "Rel Dev:"});
    }
    if (metric == "detailedmemory") {
        // Only the ids are ever read; the names are as they have always been.
        std::vector<FigureColumn> columns;
        const struct {
            const char* heading;
            const char* figure;
            const char* lhsName;
            const char* absName;
            const char* relName;
        } figures[] = {
            {"Committed", "Committed", "Sort_LHS_Committed", "Sort_AbsDev_Committed",
             "Sort_RelDev_committed"},
            {"Reserved", "Reserved", "Sort_LHS_Reserved", "Sort_AbsDev_Reserved",
             "Sort_RelDev_reserved"},
            {"Dlls", "Dlls", "Sort_LHS_Dlls", "Sort_AbsDev_Dlls", "Sort_RelDev_dlls"},
            {"OS Kernel", "NonProcess", "Sort_LHS_NonProcess", "Sort_AbsDev_NonProcess",
             "Sort_RelDev_os"},
            {"Free", "Free", "Sort_LHS_free", "Sort_AbsDev_free", "Sort_RelDev_free"},
        };
        for (const auto& figure : figures) {
            FigureColumn column = sameNames(figure.heading, figure.figure);
            column.lhsName = figure.lhsName;
            column.absName = figure.absName;
            column.relName = figure.relName;
            columns.push_back(column);
        }
        return comparisonRankTable("Memory", nullptr, columns,
                                   {"LHS:", "RHS:", "AbsDev:", "RelDev:"});
    }
    return {};
}

std::string sortTable(const std::string& metric, bool isComparison) {
    return "<table id=\"SortData\" style=\"display:none\">\n<tr><td valign=\"top\">\n" +
           rankTable("MetaData", {{"Phase:", "Sort_phasename"},
                                  {"Model:", "Sort_modelname"},
                                  {"Target:", "Sort_targetname"},
                                  {"Machine:", "Sort_machinename"},
                                  {"Chart:", "Sort_chartname"},
                                  {"Exec Order:", "Sort_execorder"}}) +
           "</td><td valign=\"top\">\n" + metricRankTable(metric, isComparison) +
           "</td></tr>\n</table>\n";
}

}  // namespace

std::string ptHtmlPhasePanel(const std::string& metric, bool isComparison) {
    return "<div id=\"phaseSummaryDiv\" style=\"text-align:left; height:100%\">\n"
           "<div id=\"phaseSummaryTableDiv\" style=\"height:100%; display:none\"></div>\n"
           "<div id=\"userInputs\">\n"
           "<table id=\"UserInputsTableId\" class=\"dataTable\" width=\"99%\">\n"
           "<tr><td>\n" +
           panelBlock("Filters", "FilterData", "FilterExpandCollapse", filterTable()) +
           "</td></tr>\n<tr><td>\n" +
           panelBlock("Sort", "SortData", "SortExpandCollapse", sortTable(metric, isComparison)) +
           "</td></tr>\n"
           "<tr><td><input type=\"submit\" value=\"Refresh\" "
           "onclick=\"userInputsAction(); return true;\" /></td></tr>\n"
           "</table>\n</div>\n</div>\n";
}

}  // namespace pt::report
