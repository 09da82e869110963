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

}  // namespace pt::report
