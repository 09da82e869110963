// The elements of the memory charts, written by a script once the page knows whether the
// browser draws on canvases.

#include "report/fragments.h"

namespace pt::report {

namespace {

/// The script's opening: the canvas test, then the chart's table where canvases work.
std::string shellScript(const std::string& chartMarkup) {
    return "<script type=\"text/javascript\">\n"
           "        var canvasSupport = false;\n"
           "        document.write('<canvas id=\"canvasSupportTest\" width=\"1\" height=\"1\" "
           "style=\"display:none\"></canvas>');\n"
           "        if (String(document.getElementById('canvasSupportTest')) == "
           "'[object HTMLCanvasElement]') {\n"
           "            canvasSupport = true;\n"
           "        }\n"
           "        if (canvasSupport) {\n"
           "            document.write('" +
           chartMarkup +
           "');\n"
           "        } else {\n"
           "            document.write('<table id=\"memoryCanvasTable\" class=\"dataTable "
           "blankTable\" border=\"1\" style=\"height:300px; visibility:hidden\"><tr><td>"
           "<div id=\"noSupport\" style=\"display:none\"><p class=\"style1\">Your browser does "
           "not support the HTML5 Canvas.</p><p class=\"style2\">Browsers that support the "
           "HTML5 canvas to view the Memory Statistics chart<br>include Firefox, Safari and "
           "Chrome.</p></div></td></tr></table>');\n"
           "        }\n"
           "</script>\n";
}

}  // namespace

std::string ptHtmlCanvasShell(bool hasDetailed) {
    if (!hasDetailed) {
        return {};
    }
    return shellScript(
        "<table id=\"memoryCanvasTable\" class=\"dataTable blankTable\" "
        "style=\"height:0px; visibility:hidden\"><tr><td>"
        "<div id=\"lockedcanvasdiv\" style=\"width:110px; height:400px; display:none\">"
        "<canvas id=\"lockedcanvas\" width=\"110\" height=\"400\"></canvas></div>"
        "<div id=\"legendCanvasDiv\" style=\"display:none\">"
        "<canvas id=\"legendCanvas\" width=\"700\" height=\"400\"></canvas></div>"
        "<div id=\"scrollcanvasdiv\" style=\"height:400px; display:none\" "
        "onclick=\"statsPopup(event)\" onmousemove=\"divMouseMove(event);showToolTip(event);\" "
        "onmouseout=\"divMouseOut(event);\"><canvas id=\"scrollcanvas\" height=\"400\"></canvas>"
        "</div>"
        "<div id=\"fakecanvasdiv\" style=\"height:20px; display:none\" "
        "onscroll=\"swapCanvas(this)\"><canvas id=\"fakecanvas\" height=\"1\"></canvas></div>"
        "<div id=\"tableCanvasDiv\"></div></td></tr></table>");
}

namespace {

/// A band of the difference chart: its div and canvas, hidden until the tab shows.
std::string band(const std::string& id, const std::string& handlers) {
    return "<div id=\"" + id + "CanvasDiffDiv\" style=\"display:none\"" + handlers +
           "><canvas id=\"" + id + "CanvasDiff\"></canvas></div>";
}

/// The arrows that make a band smaller or larger.
std::string arrows(const std::string& id) {
    return "<div id=\"upDownArrows" + id +
           "CanvasDiffDiv\" style=\"display:none\" onclick=\"expandOrCollapse(this,event)\">"
           "<canvas id=\"upDownArrows" +
           id + "CanvasDiff\" width=\"38\" height=\"18\"></canvas></div>";
}

/// A graph of the difference chart with its matte, its arrows and the canvas of its tick text.
std::string graph(const std::string& id, const std::string& arrowsId) {
    return band(id,
                " onclick=\"statsPopup(event,this)\" onmousemove=\"conditionalPointer(event,this)\""
                " onmouseout=\"this.style.cursor=\\'auto\\'\"") +
           "<div id=\"" + id + "Matte\" style=\"display:none\"></div>" + arrows(arrowsId) +
           "<div id=\"" + id + "LabelCanvasDiffDiv\" style=\"display:none\"><canvas id=\"" + id +
           "LabelCanvasDiff\" width=\"90\"></canvas></div>";
}

}  // namespace

std::string ptHtmlCanvasShellDiff(bool hasDetailed) {
    if (!hasDetailed) {
        return {};
    }
    return shellScript(
        "<table id=\"memoryCanvasTable\" class=\"dataTable blankTable\" "
        "style=\"height:0px; visibility:hidden\"><tr><td>"
        "<div id=\"widthTest\"></div>"
        "<div id=\"graphLabelCanvasDiffDiv\" style=\"display:none\">"
        "<canvas id=\"graphLabelCanvasDiff\" width=\"140\" height=\"936\"></canvas></div>"
        "<div id=\"legendCanvasDiffDiv\" style=\"display:none\">"
        "<canvas id=\"legendCanvasDiff\" height=\"40\"></canvas></div>" +
        band("phaseNames", " onmousemove=\"showToolTip(event)\"") + arrows("PhaseNames") +
        "<div id=\"topTicksCanvasDiffDiv\" style=\"display:none\">"
        "<canvas id=\"topTicksCanvasDiff\"></canvas></div>" +
        graph("absDev", "AbsDev") + graph("dataSet1", "DataSet1") + graph("dataSet2", "DataSet2") +
        "<div id=\"fakeCanvasDiffDiv\" style=\"display:none\" onscroll=\"swapCanvas(this)\">"
        "<canvas id=\"fakeCanvasDiff\" height=\"1\"></canvas></div>"
        "<div id=\"tableCanvasDiv\"></div></td></tr></table>");
}

}  // namespace pt::report
