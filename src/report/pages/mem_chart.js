// The MemChart tab of a Detail page: the machine's virtual memory at the start of every phase
// as a stacked column per row of procData, phase names slanted across the top, a popup with the
// figures of a clicked column. Only a window's width of columns is ever drawn: the scroll bar
// belongs to fakecanvasdiv, whose empty canvas is as wide as the whole chart, and scrolling it
// redraws the one window-wide canvas.

        // Free, Reserved, Committed, Dlls, Non-process.
        var colors = ['#7AEE3C', '#FFC8C8', '#EC0033', '#FFA500', '#666666'];
        var legendTexts = ['Free', 'Reserved', 'Committed', 'Dlls', 'Non-process'];

        var marginLeft = 90;
        var marginTop = 80;
        var numTicksY = 11;
        var defaultNumTicksY = 2;
        var yTickLabelSpacing = 10;
        var columnWidth = 23;
        var tickLengthX = 5;
        var tickLengthY = 5;
        var boxSideLength = 10;
        var eventLabelVertSpacing = 15;
        var eventLabelRotate = 75;
        var canvasDivHeight = 430;
        var minWindowWidth = 916;
        var tickLabelFontSize = 10;
        var maxLabelHeight = 550;
        var enlargeCanvasArea = 200;
        var multiplier1 = 1.3;
        var multiplier2 = 0.85;
        var legendFont = '12px Sans-Serif';
        var yLabelFont = '14pt Sans-Serif';
        var eventLabelFont = '12px Sans-Serif';
        var sin75 = Math.sin(eventLabelRotate * Math.PI / 180);
        var cos75 = Math.cos(eventLabelRotate * Math.PI / 180);

        var x_locked = null, x_scroll = null, ctx_locked = null, ctx_scroll = null;
        var windowWidth = 0;
        var dataLen = 0;
        var phasesToRender = 0;
        var extraPaddingW = 0;
        var xticks = new Array(), leftX = new Array(), rightX = new Array();
        var bEllipsed = new Array();
        var unellipsedPhaseNames = new Array();
        var visiblePhaseLengths = new Array();
        var max = 0;
        var nonProcessZoom = 0;
        var freeMemZoom = 0;
        var someOutlineDivIsVisible = false;
        var registeredPhaseOutlines = new Array();
        var visiblePhaseNames = new Array(), visibleKernelRes = new Array(), visibleFree = new Array(),
            visibleOtherUsed = new Array(), visibleHeapCom = new Array(), visibleHeapRes = new Array();
        var savedOutlineDivIds = new Array();
        var savedPopupDivIds = new Array();
        var zeroBasedIndicesOfClickedPhase = new Array();
        var availablePopupIndices = new Array();
        // The first row of procData in the window, and whether the window reaches the end.
        var firstVisibleRow = 0;
        var chartAtEnd = false;
        var activeMinInd = -1;
        var dialogIsClicked = false, clickedDialogId = '';
        var dialogLeft = 0, dialogTop = 0, dialogCursorX = 0, dialogCursorY = 0;

        // Few phases fill the screen.
        var screenW = 5000;
        if (parseInt(navigator.appVersion) > 3) {
            screenW = screen.width;
        }
        if (columnWidth * procData.length < screenW && procData.length > 0) {
            columnWidth = Math.ceil(screenW / procData.length);
        }

        // y upward from the canvas's bottom.
        function cart(imageCoord) {
            return x_locked.height - imageCoord;
        }

        function myfillRect(canvas, x, y, w, h) {
            var ctx = document.getElementById(canvas).getContext('2d');
            ctx.fillRect(x, cart(y) - h, w, h);
        }

        function myfillText(ctx, text, x, y) {
            ctx.fillText(text, x, cart(y));
        }

        function removeItems(array, item) {
            for (var i = 0; i < array.length; i++) {
                if (array[i] == item) {
                    array.splice(i, 1);
                    return;
                }
            }
        }

        function getPageEventCoords(evt) {
            if (evt.pageX != undefined) {
                return {'x': evt.pageX, 'y': evt.pageY};
            }
            return {'x': evt.clientX + document.body.scrollLeft + document.documentElement.scrollLeft,
                    'y': evt.clientY + document.body.scrollTop + document.documentElement.scrollTop};
        }

        function getDocHeight() {
            var body = document.body, root = document.documentElement;
            return Math.max(body.scrollHeight, root.scrollHeight, body.offsetHeight,
                            root.offsetHeight, body.clientHeight, root.clientHeight);
        }

        // A figure as the axis and the popups print it: from 10000 on in the e3 ... e12 form.
        function chartNumber(value) {
            return value >= 10000 ? createScientificNotation(value) : String(Math.round(value));
        }

        function realRows() {
            return procData.length - numBlankData;
        }

        // The label of a row: its phase, then its model, target, machine and chart where it has
        // them, joined by '/'.
        function phaseLabel(record) {
            if (record.Phase < 0) {
                return '';
            }
            var label = Phase[record.Phase];
            var parts = [['Model', Model, ModelLengths], ['Target', Target, TargetLengths],
                         ['Machine', Machine, MachineLengths], ['Chart', Chart, ChartLengths]];
            for (var p = 0; p < parts.length; p++) {
                if (record[parts[p][0]] >= 0) {
                    label += '/' + parts[p][1][record[parts[p][0]]];
                }
            }
            return label;
        }

        function labelLength(record) {
            if (record.Phase < 0) {
                return 0;
            }
            var length = PhaseLengths[record.Phase] || 0;
            var parts = [['Model', ModelLengths], ['Target', TargetLengths],
                         ['Machine', MachineLengths], ['Chart', ChartLengths]];
            for (var p = 0; p < parts.length; p++) {
                if (record[parts[p][0]] >= 0) {
                    length += (parts[p][1][record[parts[p][0]]] || 0) + 10;
                }
            }
            return length;
        }

        // A column of the window: the labels ('phases') or a start figure of each row; rows in
        // the blank area give '' and 0.
        function arraySlice(arrayType, begin, end) {
            var fields = {'kernelRes': 'NonProcessStart', 'freeMem': 'FreeStart',
                          'otherUsed': 'DllsStart', 'heapCom': 'CommittedStart',
                          'heapRes': 'ReservedStart'};
            var slice = new Array();
            if (arrayType == 'phases') {
                visiblePhaseLengths = new Array();
            }
            for (var i = begin; i < end; i++) {
                var record = procData[i];
                var blank = !record || i >= realRows();
                if (arrayType == 'phases') {
                    slice.push(blank ? '' : phaseLabel(record));
                    visiblePhaseLengths.push(blank ? 0 : labelLength(record));
                } else {
                    slice.push(blank ? 0 : Number(record[fields[arrayType]]) || 0);
                }
            }
            return slice;
        }

        // The window's arrays from row begin on, with the zooms taken off.
        function fillVisibleArrays(begin) {
            var end = Math.min(begin + phasesToRender, procData.length);
            visiblePhaseNames = arraySlice('phases', begin, end);
            visibleKernelRes = arraySlice('kernelRes', begin, end);
            visibleFree = arraySlice('freeMem', begin, end);
            visibleOtherUsed = arraySlice('otherUsed', begin, end);
            visibleHeapCom = arraySlice('heapCom', begin, end);
            visibleHeapRes = arraySlice('heapRes', begin, end);
            unellipsedPhaseNames = visiblePhaseNames.slice(0);
            for (var i = 0; i < visibleFree.length; i++) {
                if (visibleKernelRes[i] >= nonProcessZoom) {
                    visibleKernelRes[i] -= nonProcessZoom;
                }
                if (visibleFree[i] >= freeMemZoom) {
                    visibleFree[i] -= freeMemZoom;
                }
            }
        }

        // Ticks at the columns' centres; the first column is half wide.
        function buildTicks() {
            xticks = new Array();
            leftX = new Array();
            rightX = new Array();
            for (var i = 0; i < phasesToRender; i++) {
                xticks.push(0.5 + i * columnWidth - (i == phasesToRender - 1 && i > 0 ? 1 : 0));
            }
            for (var c = 0; c < xticks.length; c++) {
                if (c == 0) {
                    leftX.push(xticks[0]);
                    rightX.push(xticks[0] + Math.floor(columnWidth / 2) + 0.5);
                } else if (c < xticks.length - 1) {
                    leftX.push(rightX[c - 1]);
                    rightX.push(rightX[c - 1] + columnWidth);
                } else {
                    leftX.push(rightX[c - 1]);
                    rightX.push(xticks[c] - 0.5);
                }
            }
        }

        function graphHeight() {
            return x_scroll.height - marginTop - 6;
        }

        function drawTopTicks() {
            ctx_scroll.strokeStyle = 'black';
            ctx_scroll.beginPath();
            for (var i = 0; i < xticks.length; i++) {
                ctx_scroll.moveTo(xticks[i], marginTop + 1);
                ctx_scroll.lineTo(xticks[i], marginTop + 1 - tickLengthX);
            }
            ctx_scroll.stroke();
        }

        function drawLegendBoxes() {
            var legend = document.getElementById('legendCanvas');
            if (!legend) {
                return;
            }
            var ctx = legend.getContext('2d');
            ctx.font = legendFont;
            var leftIndent = 100;
            for (var c = 0; c < colors.length; c++) {
                ctx.fillStyle = colors[c];
                ctx.fillRect(leftIndent, 15, boxSideLength, boxSideLength);
                ctx.fillStyle = 'black';
                ctx.fillText(legendTexts[c], leftIndent + 18, 24);
                leftIndent += 18 + ctx.measureText(legendTexts[c]).width + 30;
            }
        }

        function fontHeight(size) {
            return size <= 10 ? 6 : (size <= 12 ? 9 : 10);
        }

        // The y-axis on the locked canvas: ticks, and labels of the figures or of the zoom.
        function drawYticks() {
            var count = max > 0 ? numTicksY : defaultNumTicksY;
            var spacing = graphHeight() / (count - 1);
            ctx_locked.clearRect(0, 0, x_locked.width, x_locked.height);
            ctx_locked.strokeStyle = 'black';
            ctx_locked.fillStyle = 'black';
            ctx_locked.font = tickLabelFontSize + 'px Sans-Serif';
            ctx_locked.textAlign = 'right';
            ctx_locked.beginPath();
            for (var i = 0; i < count; i++) {
                var t = i * spacing + 5 + (i == 0 || i == count - 1 ? 0.5 : 0);
                ctx_locked.moveTo(marginLeft - tickLengthY, cart(t));
                ctx_locked.lineTo(marginLeft, cart(t));
                var label = '';
                if (max > 5000) {
                    label = i == 0 ? 'NP = ' + chartNumber(nonProcessZoom) :
                        '+' + chartNumber(Math.round(i * (max - nonProcessZoom - freeMemZoom) / (count - 1)));
                } else if (max > 0) {
                    label = String(Math.round(i * max / (count - 1)));
                } else {
                    label = i == 0 ? '0' : (i == count - 1 ? '~8TB' : '');
                }
                myfillText(ctx_locked, label, marginLeft - yTickLabelSpacing,
                           t - Math.ceil(fontHeight(tickLabelFontSize) / 2));
            }
            ctx_locked.stroke();
            ctx_locked.textAlign = 'start';
        }

        function drawYTitle() {
            var title = max > 0 ? 'Virtual Memory (MB)' : 'Virtual Memory';
            ctx_locked.save();
            ctx_locked.font = yLabelFont;
            ctx_locked.fillStyle = 'black';
            var width = ctx_locked.measureText(title).width;
            var y = marginTop + (x_locked.height - marginTop - 6 - width) / 2;
            ctx_locked.translate(25, x_locked.height - y);
            ctx_locked.rotate(1.5 * Math.PI);
            ctx_locked.fillText(title, 0, 0);
            ctx_locked.restore();
        }

        // The stacked columns of the window: non-process, Dlls, committed, reserved, free.
        function showMemStats(begin, end, endOfScroll) {
            if (max <= 0) {
                return;
            }
            var heightFactor = graphHeight() / max;
            var stacks = [[visibleKernelRes, 4], [visibleOtherUsed, 3], [visibleHeapCom, 2],
                          [visibleHeapRes, 1], [visibleFree, 0]];
            for (var i = 0; i < visibleFree.length && i < leftX.length; i++) {
                var blank = endOfScroll && begin + i >= realRows();
                var bottom = 0;
                for (var s = 0; s < stacks.length; s++) {
                    var height = stacks[s][0][i] * heightFactor;
                    if (!(height > 0)) {
                        continue;
                    }
                    ctx_scroll.fillStyle = blank ? '#FFFFFF' : colors[stacks[s][1]];
                    myfillRect('scrollcanvas', leftX[i], 5.5 + bottom, rightX[i] - leftX[i], height);
                    bottom += height;
                }
            }
        }

        function hideAllOutlines() {
            for (var i = 0; i < xticks.length + 1; i++) {
                var outline = document.getElementById('outlineDiv' + i);
                if (outline) {
                    outline.style.display = 'none';
                }
            }
            someOutlineDivIsVisible = false;
        }

        function chartIsVisible() {
            var table = document.getElementById('memoryCanvasTable');
            return table && table.style.visibility != 'hidden';
        }

        // The popup of a column, by the row it was opened on; null when there is none.
        function popupsOpen() {
            var open = new Array();
            for (var n = 100; n >= 1; n--) {
                var popup = document.getElementById('popupDiv' + n);
                if (popup && popup.style.zIndex >= 1000 && popup.ptRow != undefined) {
                    open.push(popup);
                }
            }
            return open;
        }

        // Draws the window of rows begin..end: columns, labels, and the outlines of the columns
        // whose popups are open. Returns whether the window reaches the end of the data.
        function render(begin, end) {
            var endOfScroll = end >= procData.length;
            showMemStats(begin, end, endOfScroll);
            if (someOutlineDivIsVisible) {
                hideAllOutlines();
            }
            var longest = 0;
            for (var l = 0; l < visiblePhaseLengths.length; l++) {
                longest = Math.max(longest, visiblePhaseLengths[l]);
            }
            if (multiplier1 * longest / sin75 > maxLabelHeight) {
                multiplier1 = 1.4;
                multiplier2 = 0.65;
            } else {
                multiplier1 = 1.2;
                multiplier2 = 0.85;
            }
            var maxStringLength = maxLabelHeight / sin75;
            ctx_scroll.font = eventLabelFont;
            // A cut label ends in '...' and stays inside the room above the graph.
            var fitWidth = Math.max(0, (marginTop - eventLabelVertSpacing - 5) / sin75);
            var fitLabel = function(label) {
                while (label.length > 3 && ctx_scroll.measureText(label).width > fitWidth) {
                    label = label.slice(0, Math.max(0, label.length - 4)) + '...';
                }
                return label;
            };
            bEllipsed = new Array();
            for (var i = 0; i < visiblePhaseNames.length; i++) {
                var text = visiblePhaseNames[i];
                bEllipsed.push(false);
                if (text == '') {
                    continue;
                }
                ctx_scroll.fillStyle = 'black';
                if (multiplier1 * visiblePhaseLengths[i] > maxStringLength ||
                    ctx_scroll.measureText(text).width > fitWidth) {
                    var cut = fitLabel(modifyStrToShow('Combined', text,
                                                       Math.min(fitWidth, maxStringLength * multiplier2)));
                    if (cut.indexOf('...') != -1) {
                        ctx_scroll.fillStyle = 'blue';
                        bEllipsed[i] = true;
                        text = cut;
                    }
                }
                ctx_scroll.save();
                ctx_scroll.translate(i * columnWidth + tickLengthX + 4, marginTop - eventLabelVertSpacing);
                ctx_scroll.rotate(-eventLabelRotate * Math.PI / 180);
                ctx_scroll.fillText(text, 0, 0);
                ctx_scroll.restore();
            }
            ctx_scroll.fillStyle = 'black';
            // Open popups keep their columns outlined while the chart scrolls.
            var open = popupsOpen();
            for (var p = 0; p < open.length; p++) {
                var alias = open[p].ptRow - begin;
                if (alias < 0 || alias >= xticks.length) {
                    continue;
                }
                if (chartIsVisible()) {
                    var outline = document.getElementById('outlineDiv' + alias);
                    if (outline) {
                        outline.style.display = 'block';
                        someOutlineDivIsVisible = true;
                    }
                }
                var close = document.getElementById('popupClose' + open[p].ptNumber);
                if (close) {
                    close.setAttribute('onclick', "clearDiv('" + open[p].ptNumber + "', " +
                                       open[p].ptRow + ', ' + alias + ')');
                }
            }
            if (endOfScroll) {
                var lastReal = realRows() - begin;
                if (lastReal >= 0 && lastReal < xticks.length) {
                    ctx_scroll.fillStyle = '#FFFFFF';
                    ctx_scroll.fillRect(xticks[lastReal] - columnWidth / 2 + 0.5, marginTop - tickLengthX - 2,
                                        (numBlankData + 4) * columnWidth, tickLengthX + 4);
                    ctx_scroll.fillStyle = 'black';
                }
            }
            return endOfScroll;
        }

        function drawBorder(endOfScroll) {
            ctx_scroll.strokeStyle = 'black';
            var width = windowWidth;
            if (endOfScroll) {
                var lastReal = realRows() - firstVisibleRow;
                width = lastReal >= 0 && lastReal < xticks.length ?
                    xticks[lastReal] - columnWidth / 2 : windowWidth;
            }
            ctx_scroll.strokeRect(0.5, marginTop + 0.5, width, graphHeight());
        }

        function resizeScrollDiv() {
            var width = Math.max(0, windowWidth - marginLeft - 36) + 'px';
            document.getElementById('scrollcanvasdiv').style.width = width;
            document.getElementById('fakecanvasdiv').style.width = width;
        }

        function windowInnerWidth() {
            return window.innerWidth || document.body.clientWidth;
        }

        function renderMemChart() {
            x_locked = document.getElementById('lockedcanvas');
            x_scroll = document.getElementById('scrollcanvas');
            if (!x_locked || !x_scroll || !x_scroll.getContext) {
                return;
            }
            ctx_locked = x_locked.getContext('2d');
            ctx_scroll = x_scroll.getContext('2d');
            windowWidth = windowInnerWidth();
            dataLen = procData.length;

            ctx_scroll.font = eventLabelFont;
            var lastLabel = dataLen > 0 ? phaseLabel(procData[dataLen - 1]) : '';
            extraPaddingW = Math.round(ctx_scroll.measureText(lastLabel).width * cos75);
            var wanted = Math.min(30000, marginLeft + Math.max(0, dataLen - 1) * columnWidth + extraPaddingW);
            document.getElementById('fakecanvas').width = Math.max(1, wanted - marginLeft);
            x_scroll.width = windowWidth + 100;

            // Blank records let the last columns scroll into view; the tables never show them.
            numBlankData = Math.max(4, Math.ceil((extraPaddingW + 3) / columnWidth + 1));
            for (var b = 0; b < numBlankData; b++) {
                procData.push(new dataStruct(0, '0', 0, -1, -1, -1, -1, -1, -1, 0, 0, 0, 0, 0, 0,
                                             0, 0, 0, 0, 0, 0, ' ', 0, 0, ' ', 0, 0, ' ', 0, 0,
                                             ' ', 0, 0, ' '));
            }
            dataLen = procData.length;

            // Room for the slanted labels.
            maxLabelHeight -= enlargeCanvasArea;
            var requiredPaddingH = 0;
            var longest = 0;
            for (var r = 0; r < realRows(); r++) {
                var width = ctx_scroll.measureText(phaseLabel(procData[r])).width;
                if (Math.round(width * 1.2 * sin75 + eventLabelVertSpacing + 55) > maxLabelHeight) {
                    requiredPaddingH = maxLabelHeight + 25 - enlargeCanvasArea;
                    break;
                }
                longest = Math.max(longest, width);
            }
            if (requiredPaddingH > 0) {
                requiredPaddingH = Math.round(longest * 1.2 * sin75 + eventLabelVertSpacing + 65);
                if (requiredPaddingH > maxLabelHeight) {
                    requiredPaddingH = maxLabelHeight + 25;
                }
            }
            if (marginTop < requiredPaddingH) {
                var grow = requiredPaddingH - marginTop + enlargeCanvasArea;
                x_locked.height += grow;
                x_scroll.height += grow;
                marginTop = requiredPaddingH;
            }
            canvasDivHeight = Math.max(canvasDivHeight, x_scroll.height + 20);
            document.getElementById('lockedcanvasdiv').style.height = canvasDivHeight + 'px';
            document.getElementById('scrollcanvasdiv').style.height = canvasDivHeight + 'px';
            document.getElementById('fakecanvasdiv').style.top = (80 + x_scroll.height) + 'px';

            phasesToRender = Math.min(Math.ceil(windowWidth / columnWidth) + 1, realRows());
            buildTicks();

            max = 0;
            for (var m = 0; m < procData.length; m++) {
                var record = procData[m];
                var sum = (Number(record.NonProcess) || 0) + (Number(record.Reserved) || 0) +
                    (Number(record.Dlls) || 0) + (Number(record.Committed) || 0) + (Number(record.Free) || 0);
                max = Math.max(max, sum);
            }
            drawTopTicks();
            drawLegendBoxes();

            // Address spaces whose free and non-process figures are huge and nearly constant
            // show the part that moves.
            if (max > 5000) {
                nonProcessZoom = 1e16;
                freeMemZoom = 1e16;
                for (var z = 0; z < realRows(); z++) {
                    nonProcessZoom = Math.min(nonProcessZoom, Number(procData[z].NonProcessStart) || 0);
                    freeMemZoom = Math.min(freeMemZoom, Number(procData[z].FreeStart) || 0);
                }
                if (realRows() == 0) {
                    nonProcessZoom = 0;
                    freeMemZoom = 0;
                }
            }
            firstVisibleRow = 0;
            fillVisibleArrays(0);
            drawYticks();
            if (max > 5000) {
                max -= nonProcessZoom + freeMemZoom;
            }
            chartAtEnd = render(0, phasesToRender);
            drawBorder(chartAtEnd);
            drawYTitle();

            var holder = document.getElementById('tableCanvasDiv');
            var popups = '';
            for (var n = 1; n <= 100; n++) {
                popups += '<div id="popupDiv' + n + '"></div>';
                availablePopupIndices.push(n);
            }
            var outlines = '';
            for (var o = 0; o < xticks.length; o++) {
                var left = o == 0 ? xticks[0] + marginLeft + 10 : xticks[o] + marginLeft + 10 - columnWidth / 2;
                var width = o == 0 ? columnWidth / 2 : columnWidth;
                outlines += '<div id="outlineDiv' + o + '" style="display:none; position:absolute; ' +
                    'outline:black 1px solid; pointer-events:none; top:' + (marginTop + 82) + 'px; left:' + left + 'px; width:' +
                    width + 'px; height:' + (x_scroll.height - marginTop - 9) + 'px"></div>';
            }
            holder.innerHTML = popups + outlines;
            resizeScrollDiv();
        }

        // The window follows the scroll bar.
        function swapCanvas(D) {
            if (!ctx_scroll) {
                return;
            }
            ctx_scroll.clearRect(1, 1, windowWidth + 100, x_scroll.height);
            drawTopTicks();
            var m = procData.length - phasesToRender;
            var fraction = D.scrollLeft / (D.scrollWidth - D.clientWidth);
            if (!isFinite(fraction)) {
                fraction = 0;
            }
            var begin = Math.floor(m * fraction + 1);
            firstVisibleRow = Math.max(0, begin - 1);
            fillVisibleArrays(firstVisibleRow);
            ctx_scroll.beginPath();
            ctx_scroll.strokeStyle = 'black';
            chartAtEnd = render(firstVisibleRow, firstVisibleRow + phasesToRender);
            drawBorder(chartAtEnd);
        }

        function canvasResizeAction() {
            if (!ctx_scroll) {
                return;
            }
            windowWidth = windowInnerWidth();
            phasesToRender = Math.min(Math.ceil((windowWidth - marginLeft) / columnWidth) + 1 + numBlankData,
                                      realRows());
            buildTicks();
            x_scroll.width = windowWidth + 100;
            var holder = document.getElementById('tableCanvasDiv');
            for (var o = 0; o < xticks.length; o++) {
                if (!document.getElementById('outlineDiv' + o)) {
                    var outline = document.createElement('div');
                    outline.id = 'outlineDiv' + o;
                    outline.style.cssText = 'display:none; position:absolute; outline:black 1px solid; pointer-events:none; top:' +
                        (marginTop + 82) + 'px; left:' + (xticks[o] + marginLeft + 10 - columnWidth / 2) +
                        'px; width:' + columnWidth + 'px; height:' + (x_scroll.height - marginTop - 9) + 'px';
                    holder.appendChild(outline);
                }
            }
            swapCanvas(document.getElementById('fakecanvasdiv'));
            resizeScrollDiv();
        }

        function pointerLimits() {
            var top = marginTop + 80.5;
            var lastReal = realRows() - firstVisibleRow;
            var right = chartAtEnd && lastReal >= 0 && lastReal < xticks.length ?
                marginLeft + xticks[lastReal] - 2 : marginLeft + windowWidth;
            return {'top': top, 'bottom': top + graphHeight(), 'right': right};
        }

        function divMouseMove(evt) {
            var at = getPageEventCoords(evt);
            var limits = pointerLimits();
            var inside = at.y >= limits.top && at.y <= limits.bottom && at.x <= limits.right;
            document.getElementById('scrollcanvasdiv').style.cursor = inside ? 'pointer' : 'auto';
        }

        function divMouseOut(evt) {
            document.getElementById('scrollcanvasdiv').style.cursor = 'auto';
        }

        // The column whose slanted label is under the pointer, where that label is cut.
        function showToolTip(event) {
            var at = getPageEventCoords(event);
            var distance = marginTop + 100 - at.y;
            var x = at.x - marginLeft - 8 - distance / Math.tan(eventLabelRotate * Math.PI / 180);
            var nearest = nearestTick(x);
            activeMinInd = nearest >= 0 && bEllipsed[nearest] && at.y < pointerLimits().top ? nearest : -1;
        }

        function nearestTick(x) {
            var best = -1, bestDistance = 1000;
            for (var i = 0; i < xticks.length; i++) {
                var distance = Math.abs(xticks[i] - x);
                if (distance < bestDistance) {
                    best = i;
                    bestDistance = distance;
                }
            }
            return best;
        }

        // A click on a column opens a popup with its figures.
        function statsPopup(event) {
            var at = getPageEventCoords(event);
            var X = at.x - marginLeft - 8;
            var minIndAlias = nearestTick(X);
            if (minIndAlias < 0 || minIndAlias >= visiblePhaseNames.length) {
                return;
            }
            var name = visiblePhaseNames[minIndAlias];
            var figures = [visibleFree[minIndAlias] + freeMemZoom, visibleHeapRes[minIndAlias],
                           visibleHeapCom[minIndAlias], visibleOtherUsed[minIndAlias],
                           visibleKernelRes[minIndAlias] + nonProcessZoom];
            if (name == '') {
                return;
            }
            var limits = pointerLimits();
            if (at.y < limits.top || at.y > limits.bottom) {
                return;
            }
            if (X >= windowInnerWidth() - marginLeft - 7 - 20 - columnWidth / 2 && !chartAtEnd) {
                return;  // the column is almost off screen
            }
            if (availablePopupIndices.length == 0) {
                return;
            }
            var number = availablePopupIndices.pop();
            var popup = document.getElementById('popupDiv' + number);
            var left = X + marginLeft + 8;
            if (left + 180 > window.innerWidth) {
                left = window.innerWidth - 180;
            }
            var top = at.y;
            if (top + 270 > getDocHeight()) {
                top = getDocHeight() - 270;
            }
            popup.style.cssText = 'z-index:-1000; width:0px; height:0px; overflow:visible; ' +
                'position:absolute; background:white; left:' + left + 'px; top:' + top + 'px';
            popup.onselectstart = function() { return false; };
            popup.onmousedown = function() { return false; };
            var row = firstVisibleRow + minIndAlias;
            zeroBasedIndicesOfClickedPhase.push(row);
            var texts = new Array();
            for (var f = 0; f < figures.length; f++) {
                var value = Math.round(figures[f] * 100) / 100;
                texts.push(f == 0 || f == 4 ? chartNumber(value) : value.toFixed(2));
            }
            var html = '<p style="font-size:0px; display:none">' + escapeMarkup(name) + '</p>' +
                '<table class="dataTable popupTable" border="1" cellpadding="5" style="background:white">' +
                '<tr style="background:#C0C0C0"><td style="cursor:move" ' +
                'onmousedown="dialogButtonDown(event, \'popupDiv' + number + '\')" ' +
                'onmouseup="dialogButtonUp(event, \'popupDiv' + number + '\')"><b>Memory statistics</b></td>' +
                '<td><div id="popupClose' + number + '" style="cursor:pointer" ' +
                'onmouseover="this.style.color=\'white\'" onmouseout="this.style.color=\'black\'" ' +
                'onclick="clearDiv(\'' + number + '\', ' + row + ', ' + minIndAlias + ')">X</div></td></tr>' +
                '<tr><td colspan="2">' + escapeMarkup(name.split('/').join(' / ')) + '<table>';
            for (var c = 0; c < legendTexts.length; c++) {
                html += '<tr><td class="popupHeader" style="background:' + colors[c] +
                    (c == 4 ? '; min-width:80px' : '') + '">' + legendTexts[c] +
                    '</td><td style="text-align:right">' + texts[c] + '</td></tr>';
            }
            html += '</table></td></tr></table>';
            popup.innerHTML = html;
            popup.style.zIndex = '1000';
            popup.ptRow = row;
            popup.ptNumber = number;
            var outline = document.getElementById('outlineDiv' + minIndAlias);
            if (outline) {
                outline.style.display = 'block';
            }
            registeredPhaseOutlines.push(name);
            someOutlineDivIsVisible = true;
        }

        // Closes popup divID opened on a row; its index is free again, the last freed first.
        function clearDiv(divID, zeroBasedIndexOfClickedPhase, minIndAlias) {
            var popup = document.getElementById('popupDiv' + divID);
            if (!popup) {
                return;
            }
            var named = popup.getElementsByTagName('p');
            if (named.length > 0) {
                removeItems(registeredPhaseOutlines, named[0].textContent);
            }
            popup.innerHTML = '';
            popup.style.zIndex = '-1000';
            popup.style.cursor = 'auto';
            popup.ptRow = undefined;
            availablePopupIndices.push(Number(divID));
            var outline = document.getElementById('outlineDiv' + (zeroBasedIndexOfClickedPhase - firstVisibleRow));
            if (outline) {
                outline.style.display = 'none';
            }
            removeItems(zeroBasedIndicesOfClickedPhase, zeroBasedIndexOfClickedPhase);
        }

        function dialogButtonDown(event, popupID) {
            var dialog = document.getElementById(popupID);
            dialogIsClicked = true;
            clickedDialogId = popupID;
            dialog.style.zIndex = '1001';
            var at = getPageEventCoords(event);
            dialogLeft = parseInt(dialog.style.left) || 0;
            dialogTop = parseInt(dialog.style.top) || 0;
            dialogCursorX = at.x - marginLeft - 10;
            dialogCursorY = at.y;
        }

        function dialogMove(event) {
            if (!dialogIsClicked) {
                return;
            }
            var dialog = document.getElementById(clickedDialogId);
            var at = getPageEventCoords(event);
            dialog.style.left = (dialogLeft + (at.x - marginLeft - 10) - dialogCursorX) + 'px';
            dialog.style.top = (dialogTop + at.y - dialogCursorY) + 'px';
        }

        function dialogButtonUp(event, popupID) {
            dialogIsClicked = false;
        }

        var chartDivs = ['scrollcanvasdiv', 'lockedcanvasdiv', 'fakecanvasdiv', 'legendCanvasDiv'];

        // Leaving the tab: open popups and outlines are kept for the way back.
        function hideMemChart() {
            var table = document.getElementById('memoryCanvasTable');
            if (!table) {
                return;
            }
            if (table.style.visibility != 'hidden') {
                savedOutlineDivIds = new Array();
                savedPopupDivIds = new Array();
                for (var i = 0; i < 100; i++) {
                    var outline = document.getElementById('outlineDiv' + i);
                    if (outline && outline.style.display != 'none') {
                        savedOutlineDivIds.push(outline.id);
                        outline.style.display = 'none';
                    }
                }
                for (var n = 100; n >= 0; n--) {
                    var popup = document.getElementById('popupDiv' + n);
                    if (popup && popup.style.zIndex >= 1000) {
                        savedPopupDivIds.push(popup.id);
                        popup.style.display = 'none';
                    }
                }
            }
            for (var d = 0; d < chartDivs.length; d++) {
                setDisplay(chartDivs[d], 'none');
            }
            setDisplay('noSupport', 'none');
            table.style.height = '0px';
            table.style.visibility = 'hidden';
        }

        function showMemChart() {
            var table = document.getElementById('memoryCanvasTable');
            if (!table) {
                return;
            }
            table.style.visibility = 'visible';
            if (!canvasSupport) {
                table.style.height = '300px';
                setDisplay('noSupport', 'block');
                return;
            }
            for (var o = 0; o < savedOutlineDivIds.length; o++) {
                setDisplay(savedOutlineDivIds[o], 'block');
            }
            for (var p = 0; p < savedPopupDivIds.length; p++) {
                setDisplay(savedPopupDivIds[p], 'block');
            }
            table.style.height = '4000px';
            for (var d = 0; d < chartDivs.length; d++) {
                setDisplay(chartDivs[d], 'block');
            }
            if (windowInnerWidth() < minWindowWidth && window.resizeTo) {
                window.resizeTo(minWindowWidth, window.outerHeight);
            }
        }
