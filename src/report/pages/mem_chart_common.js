// What the memory charts of Detail and Difference pages share: the categories and their
// colours, the layout constants, the labels of rows, the blank records at the end of procData,
// the legend, the popups' pool and title row, dragging a popup, and the saving of open popups
// and outlines while another tab is shown.

        // Free, Reserved, Committed, Dlls, Non-process.
        var colors = ['#7AEE3C', '#FFC8C8', '#EC0033', '#FFA500', '#666666'];
        var legendTexts = ['Free', 'Reserved', 'Committed', 'Dlls', 'Non-process'];

        var defaultNumTicksY = 2;
        var yTickLabelSpacing = 10;
        var columnWidth = 23;
        var tickLengthX = 5;
        var tickLengthY = 5;
        var boxSideLength = 10;
        var eventLabelVertSpacing = 15;
        var eventLabelRotate = 75;
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

        var windowWidth = 0;
        var dataLen = 0;
        var phasesToRender = 0;
        var extraPaddingW = 0;
        var xticks = new Array(), leftX = new Array(), rightX = new Array();
        var bEllipsed = new Array();
        var unellipsedPhaseNames = new Array();
        var visiblePhaseLengths = new Array();
        var someOutlineDivIsVisible = false;
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

        function windowInnerWidth() {
            return window.innerWidth || document.body.clientWidth;
        }

        function fontHeight(size) {
            return size <= 10 ? 6 : (size <= 12 ? 9 : 10);
        }

        // A figure as the axes and the popups print it: from 10000 on in the e3 ... e12 form.
        function chartNumber(value) {
            return value >= 10000 ? createScientificNotation(value) : String(Math.round(value));
        }

        // A figure of a popup to two decimals; free and non-process figures from 10000 on in the
        // e3 ... e12 form.
        function popupFigure(value, category) {
            var rounded = Math.round(value * 100) / 100;
            return category == 0 || category == 4 ? createScientificNotation(rounded) : rounded.toFixed(2);
        }

        function realRows() {
            return procData.length - numBlankData;
        }

        // The label of a row: its phase, then its model, target, machine and chart where it has
        // them, joined by '/'.
        function phaseLabel(record) {
            if (!record || record.Phase < 0) {
                return '';
            }
            var label = Phase[record.Phase];
            var parts = [['Model', Model], ['Target', Target], ['Machine', Machine], ['Chart', Chart]];
            for (var p = 0; p < parts.length; p++) {
                if (record[parts[p][0]] >= 0) {
                    label += '/' + parts[p][1][record[parts[p][0]]];
                }
            }
            return label;
        }

        function labelLength(record) {
            if (!record || record.Phase < 0) {
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

        // Blank records let the last columns scroll into view; the tables never show them. The
        // record is positional, so which fields the zeros and blanks land in depends on the
        // page's dataStruct; the charts read a row past realRows() as empty whatever it holds.
        function appendBlankRecords() {
            numBlankData = Math.max(4, Math.ceil((extraPaddingW + 3) / columnWidth + 1));
            for (var b = 0; b < numBlankData; b++) {
                procData.push(new dataStruct(0, '0', 0, -1, -1, -1, -1, -1, -1, 0, 0, 0, 0, 0, 0,
                                             0, 0, 0, 0, 0, 0, ' ', 0, 0, ' ', 0, 0, ' ', 0, 0,
                                             ' ', 0, 0, ' '));
            }
            dataLen = procData.length;
        }

        function drawLegendBoxes(canvasId, leftIndent) {
            var legend = document.getElementById(canvasId);
            if (!legend) {
                return;
            }
            var ctx = legend.getContext('2d');
            ctx.font = legendFont;
            for (var c = 0; c < colors.length; c++) {
                ctx.fillStyle = colors[c];
                ctx.fillRect(leftIndent, 15, boxSideLength, boxSideLength);
                ctx.fillStyle = 'black';
                ctx.fillText(legendTexts[c], leftIndent + 18, 24);
                leftIndent += 18 + ctx.measureText(legendTexts[c]).width + 30;
            }
        }

        // A measure of labels in the context's present font that measures each text once:
        // rows share few labels, and a chart measures every row's.
        function labelMeasure(ctx) {
            var widths = Object.create(null);
            return function(label) {
                if (!(label in widths)) {
                    widths[label] = ctx.measureText(label).width;
                }
                return widths[label];
            };
        }

        // A label that runs past width pixels ends in '...' and is shortened until it fits.
        function fitLabel(ctx, label, width) {
            while (label.length > 3 && ctx.measureText(label).width > width) {
                label = label.slice(0, Math.max(0, label.length - 4)) + '...';
            }
            return label;
        }

        // The last row the window can start at: the one that shows the last row whole at the
        // right of a window width pixels wide.
        function lastWindowStart(width) {
            var fit = 0;
            while (fit < rightX.length && rightX[fit] <= width) {
                fit++;
            }
            return Math.max(0, realRows() - Math.max(1, fit));
        }

        // The range of the scroll bar over a window width pixels wide: a column per step, at
        // most 30000 pixels.
        function sizeScrollRange(canvasId, width) {
            var steps = lastWindowStart(width);
            document.getElementById(canvasId).width = steps == 0 ? 1 :
                Math.max(width + 1, Math.min(30000, width + steps * columnWidth));
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

        // The hundred popup divs, all free; the last freed is taken first.
        function popupDivsMarkup() {
            var popups = '';
            for (var n = 1; n <= 100; n++) {
                popups += '<div id="popupDiv' + n + '"></div>';
                availablePopupIndices.push(n);
            }
            return popups;
        }

        // The open popups, from the highest number down.
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

        // A popup div made ready at a place, kept inside the page.
        function placePopup(number, left, top) {
            var popup = document.getElementById('popupDiv' + number);
            if (left + 180 > window.innerWidth) {
                left = window.innerWidth - 180;
            }
            if (top + 270 > getDocHeight()) {
                top = getDocHeight() - 270;
            }
            popup.style.cssText = 'z-index:-1000; width:0px; height:0px; overflow:visible; ' +
                'position:absolute; background:white; left:' + left + 'px; top:' + top + 'px';
            popup.onselectstart = function() { return false; };
            popup.onmousedown = function() { return false; };
            return popup;
        }

        // The popup's first row: the drag handle and the close button.
        function popupTitleRow(number, row, alias, columns) {
            return '<tr style="background:#C0C0C0"><td style="cursor:move" ' +
                (columns > 2 ? 'colspan="' + (columns - 1) + '" ' : '') +
                'onmousedown="dialogButtonDown(event, \'popupDiv' + number + '\')" ' +
                'onmouseup="dialogButtonUp(event, \'popupDiv' + number + '\')"><b>Memory statistics</b></td>' +
                '<td><div id="popupClose' + number + '" style="cursor:pointer" ' +
                'onmouseover="this.style.color=\'white\'" onmouseout="this.style.color=\'black\'" ' +
                'onclick="clearDiv(\'' + number + '\', ' + row + ', ' + alias + ')">X</div></td></tr>';
        }

        // Moves a popup that holds its figures into the window, by the size it now has. A popup
        // wider or taller than the window keeps its top right corner in, where its close box is.
        function keepPopupInWindow(popup) {
            var table = popup.getElementsByTagName('table')[0];
            if (!table) {
                return;
            }
            var box = table.getBoundingClientRect();
            var width = document.documentElement.clientWidth || window.innerWidth;
            var height = document.documentElement.clientHeight || window.innerHeight;
            var dx = 0, dy = 0;
            if (box.left < 0) {
                dx = -box.left;
            }
            if (box.right + dx > width) {
                dx = width - box.right;
            }
            if (box.bottom > height) {
                dy = height - box.bottom;
            }
            if (box.top + dy < 0) {
                dy = -box.top;
            }
            popup.style.left = ((parseFloat(popup.style.left) || 0) + dx) + 'px';
            popup.style.top = ((parseFloat(popup.style.top) || 0) + dy) + 'px';
        }

        // Shows popup on row; its name stays in a hidden first paragraph.
        function openPopup(popup, number, row, name, html) {
            popup.innerHTML = '<p style="font-size:0px; display:none">' + escapeMarkup(name) + '</p>' + html;
            keepPopupInWindow(popup);
            popup.style.zIndex = '1000';
            popup.ptRow = row;
            popup.ptNumber = number;
            zeroBasedIndicesOfClickedPhase.push(row);
        }

        // Empties popup divID; its index is free again, the last freed first.
        function closePopup(divID, zeroBasedIndexOfClickedPhase) {
            var popup = document.getElementById('popupDiv' + divID);
            if (!popup) {
                return false;
            }
            popup.innerHTML = '';
            popup.style.zIndex = '-1000';
            popup.style.cursor = 'auto';
            popup.ptRow = undefined;
            availablePopupIndices.push(Number(divID));
            removeItems(zeroBasedIndicesOfClickedPhase, zeroBasedIndexOfClickedPhase);
            return true;
        }

        // Points the close button of every open popup at its column in the window; shows the
        // column's outlines through show(alias) where the column is in view.
        function bindPopupsToColumns(begin, show) {
            var open = popupsOpen();
            for (var p = 0; p < open.length; p++) {
                var alias = open[p].ptRow - begin;
                if (alias >= 0 && alias < xticks.length) {
                    show(alias);
                }
                var close = document.getElementById('popupClose' + open[p].ptNumber);
                if (close) {
                    close.setAttribute('onclick', "clearDiv('" + open[p].ptNumber + "', " +
                                       open[p].ptRow + ', ' + alias + ')');
                }
            }
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

        function chartIsVisible() {
            var table = document.getElementById('memoryCanvasTable');
            return table && table.style.visibility != 'hidden';
        }

        // Leaving the tab: open popups and the outlines of their columns are kept for the way
        // back. outlineSuffixes names the outlines of a column, one per graph.
        function hideMemChart() {
            var table = document.getElementById('memoryCanvasTable');
            if (!table) {
                return;
            }
            if (table.style.visibility != 'hidden') {
                savedOutlineDivIds = new Array();
                savedPopupDivIds = new Array();
                for (var s = 0; s < outlineSuffixes.length; s++) {
                    for (var i = 0; i < 100; i++) {
                        var outline = document.getElementById('outlineDiv' + i + outlineSuffixes[s]);
                        if (outline && outline.style.display != 'none') {
                            savedOutlineDivIds.push(outline.id);
                            outline.style.display = 'none';
                        }
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
            table.style.height = '4000px';
            var shown = shownChartDivs();
            for (var d = 0; d < shown.length; d++) {
                setDisplay(shown[d], 'block');
            }
            for (var o = 0; o < savedOutlineDivIds.length; o++) {
                setDisplay(savedOutlineDivIds[o], 'block');
            }
            for (var p = 0; p < savedPopupDivIds.length; p++) {
                setDisplay(savedPopupDivIds[p], 'block');
            }
            // A resize while the tab was away drew the window from a hidden scroll bar.
            swapCanvas(document.getElementById(scrollDivId));
            if (windowInnerWidth() < minWindowWidth && window.resizeTo) {
                window.resizeTo(minWindowWidth, window.outerHeight);
            }
        }
