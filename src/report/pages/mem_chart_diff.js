// The MemChart tab of a Difference page: the two runs' virtual memory at the start of every
// phase, on the rows of the comparison. Four bands share one x-axis: the phase names, the
// absolute deviation (right minus left) around a midline, the left set and the right set. Each
// band is a ribbon, collapsed or expanded through the arrows at its right. A column whose phase
// is missing on one side repeats that side's previous figures in shaded colours. As on Detail
// pages, only a window's width of columns is drawn and fakeCanvasDiffDiv's scroll bar moves it.

        var colorsShaded = ['#62c42d', '#d1a1a1', '#a60327', '#c97f00', '#4d4d4d'];
        // The start figures of a row in the order of colors.
        var startFields = ['FreeStart', 'ReservedStart', 'CommittedStart', 'DllsStart', 'NonProcessStart'];
        var totalFields = ['Free', 'Reserved', 'Committed', 'Dlls', 'NonProcess'];

        var indivGraphFont = '14px Sans-Serif';
        var ribbonFont = 'Bold 15px Sans-Serif';
        var marginLeft = 140;
        var marginRight = 48;
        var origAbsDevTop = 153;
        var numTicksYexpanded = 11;
        var numTicksYcollapsed = 5;
        var ribbonHeight_phaseNames = 40, collapsedHeight_phaseNames = 40, expandedHeight_phaseNames = 40;
        var ribbonHeight_absDev = 40, collapsedHeight_absDev = 200, expandedHeight_absDev = 400;
        var ribbonHeight_dataSet1 = 40, collapsedHeight_dataSet1 = 200, expandedHeight_dataSet1 = 400;
        var ribbonHeight_dataSet2 = 40, collapsedHeight_dataSet2 = 200, expandedHeight_dataSet2 = 400;
        // The page's left edge of the bands' canvases: the graph label column and a border.
        var bandLeft = 152;
        var namesTop = 81;
        var outlineSuffixes = ['a', 'b', 'c'];
        var scrollDivId = 'fakeCanvasDiffDiv';
        // Outline divs made so far, per graph; the window may have been wider.
        var outlineCount = 0;

        // The bands from the top down. A graph's outlines carry its suffix.
        var bands = [
            {'name': 'phaseNames', 'div': 'phaseNamesCanvasDiffDiv', 'canvas': 'phaseNamesCanvasDiff',
             'arrows': 'upDownArrowsPhaseNamesCanvasDiffDiv', 'state': 'ribbon'},
            {'name': 'absDev', 'div': 'absDevCanvasDiffDiv', 'canvas': 'absDevCanvasDiff',
             'arrows': 'upDownArrowsAbsDevCanvasDiffDiv', 'matte': 'absDevMatte',
             'label': 'absDevLabelCanvasDiff', 'suffix': 'a', 'state': 'expanded'},
            {'name': 'dataSet1', 'div': 'dataSet1CanvasDiffDiv', 'canvas': 'dataSet1CanvasDiff',
             'arrows': 'upDownArrowsDataSet1CanvasDiffDiv', 'matte': 'dataSet1Matte',
             'label': 'dataSet1LabelCanvasDiff', 'suffix': 'b', 'side': 'LHS', 'state': 'collapsed'},
            {'name': 'dataSet2', 'div': 'dataSet2CanvasDiffDiv', 'canvas': 'dataSet2CanvasDiff',
             'arrows': 'upDownArrowsDataSet2CanvasDiffDiv', 'matte': 'dataSet2Matte',
             'label': 'dataSet2LabelCanvasDiff', 'suffix': 'c', 'side': 'RHS', 'state': 'collapsed'}];
        var namesBand = bands[0], absDevBand = bands[1];

        // Per side: the largest column, the smallest free and non-process figures, the zooms.
        var sides = {
            'LHS': {'max': 0, 'kernelResMin': 1e16, 'freeMemMin': 1e16, 'nonProcessZoom': 0, 'freeMemZoom': 0,
                    'zoomed': false},
            'RHS': {'max': 0, 'kernelResMin': 1e16, 'freeMemMin': 1e16, 'nonProcessZoom': 0, 'freeMemZoom': 0,
                    'zoomed': false}};
        var max = 0;
        var differenceRange = 0;
        // For each row and side, the row whose figures stand in it: itself, or the nearest row
        // above it that the side has; -1 before the side's first row.
        var figureRow = {'LHS': null, 'RHS': null};
        // The window's figures: [side][category][column], and the labels of its rows.
        var windowFigures = {'LHS': [], 'RHS': []};
        var visiblePhaseNames = new Array();
        var widthLimit = 0;
        var ctx_phaseNames = null;

        function band(name) {
            for (var b = 0; b < bands.length; b++) {
                if (bands[b].name == name || bands[b].div == name || bands[b].arrows == name) {
                    return bands[b];
                }
            }
            return null;
        }

        function bandHeight(b) {
            var heights = {
                'phaseNames': [ribbonHeight_phaseNames, collapsedHeight_phaseNames, expandedHeight_phaseNames],
                'absDev': [ribbonHeight_absDev, collapsedHeight_absDev, expandedHeight_absDev],
                'dataSet1': [ribbonHeight_dataSet1, collapsedHeight_dataSet1, expandedHeight_dataSet1],
                'dataSet2': [ribbonHeight_dataSet2, collapsedHeight_dataSet2, expandedHeight_dataSet2]};
            return heights[b.name][['ribbon', 'collapsed', 'expanded'].indexOf(b.state)];
        }

        function isRibbon(b) {
            return b.state == 'ribbon';
        }

        function graphBands() {
            return bands.slice(1);
        }

        // Page tops of the bands: the names band, 12 pixels for the x-ticks, then the graphs
        // 20 pixels apart.
        function bandTop(b) {
            var top = namesTop;
            for (var i = 0; i < bands.length; i++) {
                if (bands[i] == b) {
                    return top;
                }
                top += bandHeight(bands[i]) + (i == 0 ? 12 : 20);
            }
            return top;
        }

        // A label as a canvas prints it: the Baseline markup of the left label becomes text.
        function canvasLabel(label) {
            return String(label).split(baselinelabel.fontsize(0.8)).join(' (Baseline)')
                .replace(/&lt;/g, '<').replace(/&gt;/g, '>').replace(/&quot;/g, '"')
                .replace(/&#39;/g, "'").replace(/&amp;/g, '&');
        }

        function ribbonText(b) {
            return {'phaseNames': 'Phase names', 'absDev': 'Absolute deviation',
                    'dataSet1': canvasLabel(lhsLabel), 'dataSet2': canvasLabel(rhsLabel)}[b.name];
        }

        function setStyle(id, property, value) {
            var element = document.getElementById(id);
            if (element) {
                element.style[property] = value;
            }
        }

        // ---- figures ----

        // The record fields of each side, named once: the loops over every row read them by
        // these names instead of joining the side and the field at each read.
        var sideFields = (function() {
            var fields = {};
            Object.keys(sides).forEach(function(side) {
                var named = function(field) { return side + '_' + field; };
                fields[side] = {start: startFields.map(named), total: totalFields.map(named),
                                nonProcess: named('NonProcess'), nonProcessStart: named('NonProcessStart'),
                                free: named('Free'), freeStart: named('FreeStart')};
            });
            return fields;
        })();

        function sidePresent(side, row) {
            return Number(procData[row][sideFields[side].nonProcessStart]) != -99.99;
        }

        // Which row stands in for each row of a side, in one pass over the data.
        function fillMissingPhaseData(side) {
            var rows = new Array(realRows());
            var last = -1;
            for (var i = 0; i < rows.length; i++) {
                if (sidePresent(side, i)) {
                    last = i;
                }
                rows[i] = last;
            }
            figureRow[side] = rows;
        }

        function isShaded(side, row) {
            return row < realRows() && figureRow[side][row] != row;
        }

        // A start figure of a side on a row; a missing phase repeats the side's previous figure.
        function sideFigure(side, category, row) {
            if (row >= realRows()) {
                return 0;
            }
            var from = figureRow[side][row];
            return from < 0 ? 0 : Number(procData[from][sideFields[side].start[category]]) || 0;
        }

        // A category's figures of a side on rows begin..end.
        function arraySlice(side, category, begin, end) {
            var slice = new Array();
            for (var i = begin; i < end; i++) {
                slice.push(sideFigure(side, category, i));
            }
            return slice;
        }

        // Largest columns and smallest free and non-process figures of each side; a side whose
        // columns pass 5000 shows the part above its smallest free and non-process figures.
        function findMaxima() {
            for (var s in sides) {
                var figures = sides[s];
                var fields = sideFields[s];
                var rows = realRows();
                for (var i = 0; i < rows; i++) {
                    if (!sidePresent(s, i)) {
                        continue;
                    }
                    var record = procData[i];
                    var total = 0, start = 0;
                    for (var c = 0; c < colors.length; c++) {
                        total += Number(record[fields.total[c]]) || 0;
                        start += Number(record[fields.start[c]]) || 0;
                    }
                    figures.max = Math.max(figures.max, total, start);
                    figures.kernelResMin = Math.min(figures.kernelResMin, Number(record[fields.nonProcess]) || 0,
                                                    Number(record[fields.nonProcessStart]) || 0);
                    figures.freeMemMin = Math.min(figures.freeMemMin, Number(record[fields.free]) || 0,
                                                  Number(record[fields.freeStart]) || 0);
                }
                if (figures.max > 5000) {
                    figures.zoomed = true;
                    figures.nonProcessZoom = figures.kernelResMin;
                    figures.freeMemZoom = figures.freeMemMin;
                    figures.max -= figures.kernelResMin + figures.freeMemMin;
                }
            }
            max = Math.max(sides.LHS.max, sides.RHS.max);
        }

        // The deviation of a category on a row: the comparison's own where both sides have the
        // phase, otherwise right minus left of the figures the chart shows.
        function deviation(category, row) {
            if (sidePresent('LHS', row) && sidePresent('RHS', row)) {
                var abs = Number(procData[row][startFields[category] + 'AbsDev']);
                if (!isNaN(abs) && abs != -99.99) {
                    return abs;
                }
            }
            return sideFigure('RHS', category, row) - sideFigure('LHS', category, row);
        }

        // Half the deviation graph's span: the largest stack of deviations of one sign,
        // rounded up to a multiple of 25.
        function getRange() {
            var range = 0;
            for (var i = 0; i < realRows(); i++) {
                var up = 0, down = 0;
                for (var c = 0; c < colors.length; c++) {
                    var d = deviation(c, i);
                    if (d > 0) {
                        up += d;
                    } else {
                        down -= d;
                    }
                }
                range = Math.max(range, up, down);
            }
            return Math.ceil(range / 25) * 25;
        }

        // ---- axes ----

        // The columns of the window: ticks at their centres, the first column half wide.
        function getXtickLocations() {
            xticks = new Array();
            leftX = new Array();
            rightX = new Array();
            for (var i = 0; i < phasesToRender; i++) {
                var tick = 0.5 + i * columnWidth;
                if (tick < widthLimit && widthLimit - tick < 1) {
                    tick = widthLimit - 1.5;
                }
                xticks.push(tick);
            }
            for (var c = 0; c < xticks.length; c++) {
                if (c == 0) {
                    leftX.push(xticks[0] - 0.5);
                    rightX.push(xticks[0] + Math.floor(columnWidth / 2) + 0.5);
                } else {
                    leftX.push(rightX[c - 1]);
                    rightX.push(rightX[c - 1] + columnWidth);
                }
            }
        }

        // The y-labels of a graph from the bottom up.
        function getTickLabelsAndPositions(b) {
            if (isRibbon(b)) {
                return [];
            }
            var count = max == 0 ? defaultNumTicksY :
                (b.state == 'expanded' ? numTicksYexpanded : numTicksYcollapsed);
            var labels = new Array();
            if (max == 0) {
                for (var z = 0; z < count; z++) {
                    labels.push(z == 0 ? '0' : (z == count - 1 ? '~8TB' : ''));
                }
            } else if (b.side) {
                var figures = sides[b.side];
                for (var i = 0; i < count; i++) {
                    var value = Math.round(i * figures.max / (count - 1));
                    if (figures.zoomed) {
                        labels.push(i == 0 ? 'NP = ' + chartNumber(figures.kernelResMin) : '+' + chartNumber(value));
                    } else {
                        labels.push(String(value));
                    }
                }
            } else {
                // Symmetric around the midline, plain figures.
                var step = differenceRange * 2 / (count - 1);
                var half = (count - 1) / 2;
                for (var k = -half; k <= half; k++) {
                    labels.push(step == 0 && k != 0 ? '' : String(Math.round(k * step * 100) / 100));
                }
            }
            var spacing = bandHeight(b) / (labels.length - 1);
            var ticks = new Array();
            for (var t = 0; t < labels.length; t++) {
                ticks.push({'label': labels[t], 'y': bandHeight(b) - t * spacing});
            }
            return ticks;
        }

        function drawIndivGraphLabel(ctx, b, str) {
            var top = bandTop(b) - 41;
            ctx.save();
            ctx.font = indivGraphFont;
            var width = ctx.measureText(str).width;
            var zoomed = sides.LHS.zoomed || sides.RHS.zoomed;
            ctx.translate(zoomed ? 60 : 85, top + (bandHeight(b) + width) / 2);
            ctx.rotate(1.5 * Math.PI);
            ctx.fillText(str, 0, 0);
            ctx.restore();
        }

        // The y-axes: each graph's ticks and labels on its label canvas, the title and the
        // graphs' names on the graph label canvas.
        function updateYticks() {
            var all = graphBands();
            for (var b = 0; b < all.length; b++) {
                var canvas = document.getElementById(all[b].label);
                var ctx = canvas.getContext('2d');
                ctx.clearRect(0, 0, canvas.width, canvas.height);
                var ticks = getTickLabelsAndPositions(all[b]);
                ctx.strokeStyle = 'black';
                ctx.fillStyle = 'black';
                ctx.font = tickLabelFontSize + 'px Sans-Serif';
                ctx.textAlign = 'right';
                ctx.beginPath();
                for (var t = 0; t < ticks.length; t++) {
                    // The label canvas starts 8 pixels above the graph's border.
                    var y = Math.round(ticks[t].y) + 9.5;
                    ctx.moveTo(canvas.width - tickLengthY, y);
                    ctx.lineTo(canvas.width, y);
                    ctx.fillText(ticks[t].label, canvas.width - 8, y + Math.ceil(fontHeight(tickLabelFontSize) / 2));
                }
                ctx.stroke();
            }
            var labels = document.getElementById('graphLabelCanvasDiff');
            var lctx = labels.getContext('2d');
            lctx.clearRect(0, 0, labels.width, labels.height);
            var shown = all.filter(function(g) { return !isRibbon(g); });
            if (shown.length == 0) {
                return;
            }
            lctx.fillStyle = 'black';
            var title = sides.LHS.max > 0 && sides.RHS.max > 0 ? 'Virtual Memory (MB)' : 'Virtual Memory';
            lctx.save();
            lctx.font = yLabelFont;
            var top = bandTop(all[0]) - 41, bottom = bandTop(all[2]) + bandHeight(all[2]) - 41;
            lctx.translate(25, (top + bottom + lctx.measureText(title).width) / 2);
            lctx.rotate(1.5 * Math.PI);
            lctx.fillText(title, 0, 0);
            lctx.restore();
            for (var g = 0; g < shown.length; g++) {
                var name = shown[g].side ? ribbonText(shown[g]) : 'Absolute Deviation';
                drawIndivGraphLabel(lctx, shown[g], name);
            }
        }

        function drawTopTicks() {
            var canvas = document.getElementById('topTicksCanvasDiff');
            var ctx = canvas.getContext('2d');
            ctx.clearRect(0, 0, canvas.width, canvas.height);
            ctx.strokeStyle = 'black';
            ctx.beginPath();
            var columns = Math.min(xticks.length, realRows() - firstVisibleRow);
            for (var i = 0; i < columns && xticks[i] < widthLimit; i++) {
                ctx.moveTo(xticks[i] + 1, canvas.height);
                ctx.lineTo(xticks[i] + 1, canvas.height - tickLengthX);
            }
            ctx.stroke();
        }

        function drawMidline(specificWidth) {
            if (isRibbon(absDevBand)) {
                return;
            }
            var ctx = document.getElementById(absDevBand.canvas).getContext('2d');
            var y = Math.floor(bandHeight(absDevBand) / 2) + 0.5;
            ctx.strokeStyle = 'black';
            ctx.beginPath();
            ctx.moveTo(0, y);
            ctx.lineTo(Math.max(0, specificWidth - 2), y);
            ctx.stroke();
        }

        // The arrows of a band: up (smaller) at the left, down (larger) at the right.
        function drawUpDownArrows(canvas) {
            var ctx = canvas.getContext('2d');
            ctx.clearRect(0, 0, canvas.width, canvas.height);
            ctx.fillStyle = '#A1A0A0';
            var triangles = [[[4, 15], [18, 15], [11, 3]], [[22, 3], [35, 3], [28.5, 15]]];
            for (var t = 0; t < triangles.length; t++) {
                ctx.beginPath();
                ctx.moveTo(triangles[t][0][0], triangles[t][0][1]);
                ctx.lineTo(triangles[t][1][0], triangles[t][1][1]);
                ctx.lineTo(triangles[t][2][0], triangles[t][2][1]);
                ctx.closePath();
                ctx.fill();
            }
        }

        // ---- bands ----

        function getScrollbarWidth() {
            var outer = document.createElement('div');
            outer.style.cssText = 'position:absolute; top:-1000px; left:-1000px; width:100px; height:50px; overflow:hidden';
            var inner = document.createElement('div');
            inner.style.height = '200px';
            outer.appendChild(inner);
            document.body.appendChild(outer);
            var without = inner.offsetWidth;
            outer.style.overflow = 'scroll';
            var within = inner.offsetWidth;
            document.body.removeChild(outer);
            return without - within;
        }

        function measuredWindowWidth() {
            var test = document.getElementById('widthTest');
            return test && test.offsetWidth > 0 ? test.offsetWidth : windowInnerWidth();
        }

        // The scroll bar under the last band; the window of columns is as wide as it is.
        function repositionScrollbar(firstTime) {
            var last = bands[bands.length - 1];
            var scroll = document.getElementById('fakeCanvasDiffDiv');
            scroll.style.top = (bandTop(last) + bandHeight(last) + 7) + 'px';
            if (firstTime) {
                scroll.style.left = (marginLeft + 10) + 'px';
            }
            widthLimit = Math.max(columnWidth, windowWidth - 10 - marginLeft - marginRight - getScrollbarWidth());
            scroll.style.width = widthLimit + 'px';
        }

        // Every element of the bands in its place for the bands' states.
        function resizeAll() {
            for (var b = 0; b < bands.length; b++) {
                var item = bands[b];
                var top = bandTop(item), height = bandHeight(item);
                var canvas = document.getElementById(item.canvas);
                canvas.width = windowWidth;
                canvas.height = height;
                setStyle(item.div, 'top', top + 'px');
                setStyle(item.div, 'height', height + 'px');
                setStyle(item.arrows, 'top', top + 'px');
                if (item.matte) {
                    setStyle(item.matte, 'top', top + 'px');
                    setStyle(item.matte, 'height', (height + 2) + 'px');
                    var label = document.getElementById(item.label);
                    label.width = 90;
                    label.height = height + 18;
                    setStyle(item.label + 'Div', 'top', (top - 8) + 'px');
                }
            }
            var last = bands[bands.length - 1];
            var labelHeight = bandTop(last) + bandHeight(last) - 37;
            document.getElementById('graphLabelCanvasDiff').height = labelHeight;
            setStyle('graphLabelCanvasDiffDiv', 'height', (labelHeight + 2) + 'px');
            var ticksTop = namesTop + bandHeight(namesBand) + 2;
            var ticks = document.getElementById('topTicksCanvasDiff');
            ticks.width = windowWidth;
            ticks.height = Math.max(1, bandTop(absDevBand) - ticksTop);
            setStyle('topTicksCanvasDiffDiv', 'top', ticksTop + 'px');
            setStyle('topTicksCanvasDiffDiv', 'left', (marginLeft + 11) + 'px');
            setStyle('topTicksCanvasDiffDiv', 'display', isRibbon(absDevBand) || !chartIsVisible() ? 'none' : 'block');
            setStyle('phaseNamesCanvasDiffDiv', 'border', isRibbon(namesBand) ? '1px solid black' : '0px');
            placeOutlines();
        }

        // The right edge of the bands: short of the arrows, or at the last column once the
        // window reaches the end of the data, so that the blank rows stay out of sight.
        function setBandsRight() {
            var right = marginRight;
            var lastColumn = realRows() - 1 - firstVisibleRow;
            if (chartAtEnd && lastColumn >= 0 && lastColumn < rightX.length && rightX[lastColumn] < widthLimit) {
                right = measuredWindowWidth() - (bandLeft + Math.ceil(rightX[lastColumn]) + 1);
            }
            for (var b = 0; b < bands.length; b++) {
                setStyle(bands[b].div, 'right', right + 'px');
            }
            setStyle('topTicksCanvasDiffDiv', 'right', right + 'px');
        }

        function drawRibbon(divId) {
            var b = band(divId);
            var canvas = document.getElementById(b.canvas);
            var ctx = canvas.getContext('2d');
            ctx.fillStyle = '#E7EBF5';
            ctx.fillRect(0, 0, canvas.width, canvas.height);
            ctx.fillStyle = 'black';
            ctx.font = ribbonFont;
            ctx.fillText(ribbonText(b), 25, 25);
            showOutlines(b, false);
        }

        function eraseRibbon(divId) {
            var b = band(divId);
            var canvas = document.getElementById(b.canvas);
            canvas.getContext('2d').clearRect(0, 0, canvas.width, canvas.height);
        }

        function drawLegend() {
            document.getElementById('legendCanvasDiff').width = windowWidth;
            drawLegendBoxes('legendCanvasDiff', 25);
        }

        function putRibbonLabelsBack() {
            for (var b = 0; b < bands.length; b++) {
                if (isRibbon(bands[b])) {
                    drawRibbon(bands[b].div);
                }
            }
        }

        // The arrows: the left one asks for a smaller band, the right one for a larger. The
        // names band is a ribbon or expanded; a graph goes ribbon, collapsed, expanded.
        function expandOrCollapse(divObj, evt) {
            var b = band(divObj.id);
            if (!b) {
                return;
            }
            var at = getPageEventCoords(evt);
            var test = document.getElementById('widthTest');
            var right = test.getBoundingClientRect().right + window.pageXOffset;
            var smaller = right - at.x > 29;
            var order = b == namesBand ? ['ribbon', 'expanded'] : ['ribbon', 'collapsed', 'expanded'];
            var now = order.indexOf(b.state);
            var next = order[Math.max(0, Math.min(order.length - 1, now + (smaller ? -1 : 1)))];
            if (next == b.state) {
                return;
            }
            b.state = next;
            resizeAll();
            repositionScrollbar(false);
            putRibbonLabelsBack();
            swapCanvas(document.getElementById('fakeCanvasDiffDiv'));
            updateYticks();
        }

        // ---- outlines ----

        function outlineDiv(alias, suffix) {
            return document.getElementById('outlineDiv' + alias + suffix);
        }

        // One outline per column and graph, at the column's place in the graph.
        function placeOutlines() {
            var holder = document.getElementById('tableCanvasDiv');
            var all = graphBands();
            for (var i = 0; i < xticks.length; i++) {
                for (var g = 0; g < all.length; g++) {
                    var outline = outlineDiv(i, all[g].suffix);
                    if (!outline) {
                        outline = document.createElement('div');
                        outline.id = 'outlineDiv' + i + all[g].suffix;
                        outline.style.cssText = 'display:none; position:absolute; outline:black 1px solid; ' +
                            'pointer-events:none; z-index:15';
                        holder.appendChild(outline);
                    }
                    outline.style.left = (bandLeft + leftX[i] + 1) + 'px';
                    outline.style.width = Math.max(1, rightX[i] - leftX[i] - 2) + 'px';
                    outline.style.top = (bandTop(all[g]) + 2) + 'px';
                    outline.style.height = Math.max(1, bandHeight(all[g]) - 2) + 'px';
                }
            }
            outlineCount = Math.max(outlineCount, xticks.length);
        }

        // Shows or hides a graph's outlines of the columns whose popups are open.
        function showOutlines(b, show) {
            if (!b.suffix) {
                return;
            }
            for (var i = 0; i < outlineCount; i++) {
                var outline = outlineDiv(i, b.suffix);
                if (outline) {
                    outline.style.display = 'none';
                }
            }
            if (!show || isRibbon(b) || !chartIsVisible()) {
                return;
            }
            bindPopupsToColumns(firstVisibleRow, function(alias) {
                var outline = outlineDiv(alias, b.suffix);
                if (outline && xticks[alias] < widthLimit) {
                    outline.style.display = 'block';
                }
            });
        }

        // ---- drawing ----

        // The stacked columns of a side's graph, from the bottom: non-process, Dlls,
        // committed, reserved, free.
        function drawDataSet(b, ctx, columns) {
            var figures = sides[b.side];
            if (figures.max <= 0) {
                return;
            }
            var height = bandHeight(b);
            var heightFactor = height / figures.max;
            var zooms = [figures.freeMemZoom, 0, 0, 0, figures.nonProcessZoom];
            for (var i = 0; i < columns; i++) {
                var shaded = isShaded(b.side, firstVisibleRow + i);
                var right = Math.min(rightX[i], widthLimit - 3);
                var bottom = height;
                for (var c = colors.length - 1; c >= 0; c--) {
                    var value = windowFigures[b.side][c][i];
                    if (value >= zooms[c]) {
                        value -= zooms[c];
                    }
                    var h = value * heightFactor;
                    if (!(h > 0)) {
                        continue;
                    }
                    ctx.fillStyle = shaded ? colorsShaded[c] : colors[c];
                    ctx.fillRect(leftX[i], bottom - h, right - leftX[i], h);
                    bottom -= h;
                }
                if (right < rightX[i]) {
                    break;
                }
            }
        }

        // Right minus left per category: gains stacked up from the midline, losses down. The
        // column of a phase that one side lacks is shaded, as its popup reads NA.
        function drawDeviation(ctx, columns) {
            var halfway = bandHeight(absDevBand) / 2;
            var heightFactor = halfway / differenceRange;
            if (!(differenceRange > 0)) {
                return;
            }
            for (var i = 0; i < columns; i++) {
                var right = Math.min(rightX[i], widthLimit - 3);
                var up = halfway, down = halfway;
                var row = firstVisibleRow + i;
                var palette = isShaded('LHS', row) || isShaded('RHS', row) ? colorsShaded : colors;
                for (var c = colors.length - 1; c >= 0; c--) {
                    var h = (windowFigures.RHS[c][i] - windowFigures.LHS[c][i]) * heightFactor;
                    ctx.fillStyle = palette[c];
                    if (h > 0) {
                        ctx.fillRect(leftX[i], up - h, right - leftX[i], h);
                        up -= h;
                    }
                }
                for (var n = 0; n < colors.length; n++) {
                    var d = (windowFigures.RHS[n][i] - windowFigures.LHS[n][i]) * heightFactor;
                    if (d < 0) {
                        ctx.fillStyle = palette[n];
                        ctx.fillRect(leftX[i], down, right - leftX[i], -d);
                        down -= d;
                    }
                }
                if (right < rightX[i]) {
                    break;
                }
            }
        }

        // The slanted names of the window's rows; a name too long for the band ends in '...'
        // in blue.
        function drawPhaseNames(ctx, columns) {
            var height = bandHeight(namesBand);
            var fitWidth = Math.max(0, (height - eventLabelVertSpacing) / sin75);
            ctx.font = eventLabelFont;
            bEllipsed = new Array();
            for (var i = 0; i < columns; i++) {
                var text = visiblePhaseNames[i];
                bEllipsed.push(false);
                ctx.fillStyle = 'black';
                if (ctx.measureText(text).width > fitWidth) {
                    text = fitLabel(ctx, text, fitWidth);
                    ctx.fillStyle = 'blue';
                    bEllipsed[i] = true;
                }
                if (xticks[i] >= widthLimit) {
                    break;
                }
                ctx.save();
                ctx.translate(i * columnWidth + 7, height - 3);
                ctx.rotate(-eventLabelRotate * Math.PI / 180);
                ctx.fillText(text, 0, 0);
                ctx.restore();
            }
        }

        // The window's figures of rows begin..end of both sides.
        function fillWindow(begin, end) {
            for (var s in windowFigures) {
                windowFigures[s] = new Array();
                for (var c = 0; c < colors.length; c++) {
                    windowFigures[s].push(arraySlice(s, c, begin, end));
                }
            }
            visiblePhaseNames = new Array();
            for (var i = begin; i < end; i++) {
                visiblePhaseNames.push(i < realRows() ? phaseLabel(procData[i]) : '');
            }
            unellipsedPhaseNames = visiblePhaseNames.slice(0);
        }

        // Draws the rows from begin on in every band that is not a ribbon.
        function render(begin) {
            firstVisibleRow = begin;
            var end = Math.min(begin + phasesToRender, dataLen);
            fillWindow(begin, end);
            chartAtEnd = end >= realRows();
            var columns = Math.max(0, Math.min(xticks.length, realRows() - begin));
            setBandsRight();
            for (var b = 0; b < bands.length; b++) {
                var item = bands[b];
                if (isRibbon(item)) {
                    continue;
                }
                var canvas = document.getElementById(item.canvas);
                var ctx = canvas.getContext('2d');
                ctx.clearRect(0, 0, canvas.width, canvas.height);
                if (item == namesBand) {
                    drawPhaseNames(ctx, columns);
                } else if (item == absDevBand) {
                    drawDeviation(ctx, columns);
                } else {
                    drawDataSet(item, ctx, columns);
                }
            }
            drawMidline(Math.min(widthLimit, columns > 0 ? rightX[columns - 1] + 2 : 0));
            drawTopTicks();
            var all = graphBands();
            for (var g = 0; g < all.length; g++) {
                showOutlines(all[g], true);
            }
        }

        // The window follows the scroll bar.
        function swapCanvas(D) {
            if (!ctx_phaseNames) {
                return;
            }
            var m = lastWindowStart(widthLimit);
            var fraction = D.scrollLeft / (D.scrollWidth - D.clientWidth);
            if (!isFinite(fraction)) {
                fraction = 0;
            }
            render(Math.max(0, Math.min(m, Math.floor(m * fraction))));
        }

        function renderMemChart() {
            var names = document.getElementById('phaseNamesCanvasDiff');
            if (!canvasSupport || !names || !names.getContext) {
                return;
            }
            ctx_phaseNames = names.getContext('2d');
            windowWidth = measuredWindowWidth();
            dataLen = procData.length;
            marginLeft = document.getElementById('graphLabelCanvasDiff').width;

            ctx_phaseNames.font = eventLabelFont;
            var lastLabel = dataLen > 0 ? phaseLabel(procData[dataLen - 1]) : '';
            extraPaddingW = Math.round(ctx_phaseNames.measureText(lastLabel).width * cos75);
            appendBlankRecords();

            var longest = 0;
            var measure = labelMeasure(ctx_phaseNames);
            for (var r = 0; r < realRows(); r++) {
                longest = Math.max(longest, measure(phaseLabel(procData[r])));
            }
            expandedHeight_phaseNames = Math.min(Math.round(longest * 1.1 * sin75 + 15 + 55),
                                                 maxLabelHeight - 200);
            expandedHeight_phaseNames = Math.max(expandedHeight_phaseNames, ribbonHeight_phaseNames);

            fillMissingPhaseData('LHS');
            fillMissingPhaseData('RHS');
            findMaxima();
            differenceRange = getRange();

            repositionScrollbar(true);
            phasesToRender = Math.min(Math.ceil((windowWidth - marginLeft) / columnWidth) + 1, realRows());
            getXtickLocations();
            sizeScrollRange('fakeCanvasDiff', widthLimit);
            document.getElementById('tableCanvasDiv').innerHTML = popupDivsMarkup();
            resizeAll();
            drawLegend();
            var arrows = ['upDownArrowsPhaseNamesCanvasDiff', 'upDownArrowsAbsDevCanvasDiff',
                          'upDownArrowsDataSet1CanvasDiff', 'upDownArrowsDataSet2CanvasDiff'];
            for (var a = 0; a < arrows.length; a++) {
                drawUpDownArrows(document.getElementById(arrows[a]));
            }
            putRibbonLabelsBack();
            render(0);
            updateYticks();
        }

        function canvasResizeAction() {
            if (!ctx_phaseNames) {
                return;
            }
            var width = measuredWindowWidth();
            if (width == windowWidth) {
                return;
            }
            windowWidth = width;
            repositionScrollbar(false);
            phasesToRender = Math.min(Math.ceil((windowWidth - 10 - marginLeft) / columnWidth) + 1, realRows());
            getXtickLocations();
            sizeScrollRange('fakeCanvasDiff', widthLimit);
            resizeAll();
            drawLegend();
            putRibbonLabelsBack();
            swapCanvas(document.getElementById('fakeCanvasDiffDiv'));
            updateYticks();
        }

        // ---- pointer and popups ----

        // The column under the pointer in a graph, or -1 where there is none to click.
        function columnAt(evt, divObj) {
            var b = band(divObj.id);
            if (!b || isRibbon(b)) {
                return -1;
            }
            var X = getPageEventCoords(evt).x - marginLeft - 11;
            if (X > widthLimit - 3) {
                return -1;
            }
            var column = nearestTick(X);
            return column >= 0 && firstVisibleRow + column < realRows() ? column : -1;
        }

        function conditionalPointer(evt, divObj) {
            divObj.style.cursor = columnAt(evt, divObj) >= 0 ? 'pointer' : 'auto';
        }

        // The name of the column under a slanted label, as a tip where the label is cut.
        function showToolTip(event) {
            var at = getPageEventCoords(event);
            var distance = namesTop + bandHeight(namesBand) - at.y;
            var x = at.x - bandLeft - 7 - distance / Math.tan(eventLabelRotate * Math.PI / 180);
            var nearest = isRibbon(namesBand) ? -1 : nearestTick(x);
            activeMinInd = nearest >= 0 && bEllipsed[nearest] ? nearest : -1;
            document.getElementById('phaseNamesCanvasDiffDiv').title =
                activeMinInd >= 0 ? unellipsedPhaseNames[activeMinInd] : '';
        }

        // A click on a column opens a popup with both sides' figures and their deviations; a
        // side without the phase reads NA.
        function statsPopup(event, divObj) {
            var column = columnAt(event, divObj);
            if (column < 0 || availablePopupIndices.length == 0) {
                return;
            }
            var at = getPageEventCoords(event);
            var row = firstVisibleRow + column;
            var number = availablePopupIndices.pop();
            var popup = placePopup(number, Math.min(at.x, window.innerWidth - getScrollbarWidth() - 180), at.y);
            var name = visiblePhaseNames[column];
            var html = '<table class="dataTable popupTable" border="1" cellpadding="5" style="background:white">' +
                popupTitleRow(number, row, column, 5) +
                '<tr><td colspan="5">' + escapeMarkup(name.split('/').join(' / ')) + '</td></tr>' +
                '<tr><td class="diffPopupHeader"></td><td class="diffPopupHeader">' + lhsLabel +
                '</td><td class="diffPopupHeader">' + rhsLabel +
                '</td><td class="diffPopupHeader">Abs.Dev.</td><td class="diffPopupHeader">Rel.Dev.</td></tr>';
            var hasLeft = !isShaded('LHS', row), hasRight = !isShaded('RHS', row);
            for (var c = 0; c < colors.length; c++) {
                var left = windowFigures.LHS[c][column], right = windowFigures.RHS[c][column];
                var abs = right - left;
                var rel = left != 0 ? (abs / left * 100).toFixed(1) + '%' : (abs == 0 ? '0.0%' : 'NA');
                var both = hasLeft && hasRight;
                html += '<tr><td class="popupHeader" style="background:' + colors[c] +
                    (c == 4 ? '; min-width:80px' : '') + '">' + legendTexts[c] + '</td>' +
                    '<td style="text-align:right">' + (hasLeft ? popupFigure(left, c) : 'NA') + '</td>' +
                    '<td style="text-align:right">' + (hasRight ? popupFigure(right, c) : 'NA') + '</td>' +
                    '<td style="text-align:right">' + (both ? (Math.round(abs * 100) / 100).toFixed(2) : 'NA') + '</td>' +
                    '<td style="text-align:right">' + (both ? rel : 'NA') + '</td></tr>';
            }
            html += '</table>';
            openPopup(popup, number, row, name, html);
            var highest = 1000;
            var open = popupsOpen();
            for (var p = 0; p < open.length; p++) {
                if (open[p] != popup) {
                    highest = Math.max(highest, Number(open[p].style.zIndex) || 0);
                }
            }
            popup.style.zIndex = String(highest + 1);
            var all = graphBands();
            for (var g = 0; g < all.length; g++) {
                showOutlines(all[g], true);
            }
        }

        // Closes popup divID and hides its column's outlines in all three graphs.
        function clearDiv(divID, zeroBasedIndexOfClickedPhase, minIndAlias) {
            if (!closePopup(divID, zeroBasedIndexOfClickedPhase)) {
                return;
            }
            var all = graphBands();
            for (var g = 0; g < all.length; g++) {
                var outline = outlineDiv(zeroBasedIndexOfClickedPhase - firstVisibleRow, all[g].suffix);
                if (outline) {
                    outline.style.display = 'none';
                }
            }
        }

        var chartDivs = ['graphLabelCanvasDiffDiv', 'legendCanvasDiffDiv', 'phaseNamesCanvasDiffDiv',
                         'topTicksCanvasDiffDiv', 'fakeCanvasDiffDiv'];
        for (var d = 0; d < bands.length; d++) {
            chartDivs.push(bands[d].div, bands[d].arrows);
            if (bands[d].matte) {
                chartDivs.push(bands[d].matte, bands[d].label + 'Div');
            }
        }

        function shownChartDivs() {
            return chartDivs.filter(function(id) {
                return id != 'topTicksCanvasDiffDiv' || !isRibbon(absDevBand);
            });
        }
