// The MemChart tab of a Detail page: the machine's virtual memory at the start of every phase
// as a stacked column per row of procData, phase names slanted across the top, a popup with the
// figures of a clicked column. Only a window's width of columns is ever drawn: the scroll bar
// belongs to fakecanvasdiv, whose empty canvas is as wide as the whole chart, and scrolling it
// redraws the one window-wide canvas.

        var marginLeft = 90;
        var marginTop = 80;
        var numTicksY = 11;
        var canvasDivHeight = 430;
        var outlineSuffixes = [''];
        var scrollDivId = 'fakecanvasdiv';

        var x_locked = null, x_scroll = null, ctx_locked = null, ctx_scroll = null;
        var max = 0;
        var nonProcessZoom = 0;
        var freeMemZoom = 0;
        var visiblePhaseNames = new Array(), visibleKernelRes = new Array(), visibleFree = new Array(),
            visibleOtherUsed = new Array(), visibleHeapCom = new Array(), visibleHeapRes = new Array();

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

        // Draws the window of rows begin..end: columns, labels, and the outlines of the columns
        // whose popups are open. Returns whether the window reaches the end of the data.
        function render(begin, end) {
            var endOfScroll = end >= realRows();
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
                    var cut = fitLabel(ctx_scroll, modifyStrToShow('Combined', text,
                                                       Math.min(fitWidth, maxStringLength * multiplier2)), fitWidth);
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
            bindPopupsToColumns(begin, function(alias) {
                var outline = document.getElementById('outlineDiv' + alias);
                if (outline && chartIsVisible()) {
                    outline.style.display = 'block';
                    someOutlineDivIsVisible = true;
                }
            });
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

        // The width of the chart's window on the page.
        function chartWidth() {
            return Math.max(0, windowWidth - marginLeft - 36);
        }

        function resizeScrollDiv() {
            var width = chartWidth() + 'px';
            document.getElementById('scrollcanvasdiv').style.width = width;
            document.getElementById('fakecanvasdiv').style.width = width;
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
            x_scroll.width = windowWidth + 100;

            appendBlankRecords();

            // Room for the slanted labels.
            maxLabelHeight -= enlargeCanvasArea;
            var requiredPaddingH = 0;
            var longest = 0;
            var measure = labelMeasure(ctx_scroll);
            for (var r = 0; r < realRows(); r++) {
                var width = measure(phaseLabel(procData[r]));
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
            sizeScrollRange('fakecanvas', chartWidth());

            max = 0;
            for (var m = 0; m < procData.length; m++) {
                var record = procData[m];
                var sum = (Number(record.NonProcess) || 0) + (Number(record.Reserved) || 0) +
                    (Number(record.Dlls) || 0) + (Number(record.Committed) || 0) + (Number(record.Free) || 0);
                max = Math.max(max, sum);
            }
            drawTopTicks();
            drawLegendBoxes('legendCanvas', 100);

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
            var popups = popupDivsMarkup();
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
            var m = lastWindowStart(chartWidth());
            var fraction = D.scrollLeft / (D.scrollWidth - D.clientWidth);
            if (!isFinite(fraction)) {
                fraction = 0;
            }
            firstVisibleRow = Math.max(0, Math.min(m, Math.floor(m * fraction)));
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
            sizeScrollRange('fakecanvas', chartWidth());
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
            var popup = placePopup(number, X + marginLeft + 8, at.y);
            var row = firstVisibleRow + minIndAlias;
            var texts = new Array();
            for (var f = 0; f < figures.length; f++) {
                texts.push(popupFigure(figures[f], f));
            }
            var html = '<table class="dataTable popupTable" border="1" cellpadding="5" style="background:white">' +
                popupTitleRow(number, row, minIndAlias, 2) +
                '<tr><td colspan="2">' + escapeMarkup(name.split('/').join(' / ')) + '<table>';
            for (var c = 0; c < legendTexts.length; c++) {
                html += '<tr><td class="popupHeader" style="background:' + colors[c] +
                    (c == 4 ? '; min-width:80px' : '') + '">' + legendTexts[c] +
                    '</td><td style="text-align:right">' + texts[c] + '</td></tr>';
            }
            html += '</table></td></tr></table>';
            openPopup(popup, number, row, name, html);
            var outline = document.getElementById('outlineDiv' + minIndAlias);
            if (outline) {
                outline.style.display = 'block';
            }
            someOutlineDivIsVisible = true;
        }

        // Closes popup divID opened on a row; its index is free again, the last freed first.
        function clearDiv(divID, zeroBasedIndexOfClickedPhase, minIndAlias) {
            if (!closePopup(divID, zeroBasedIndexOfClickedPhase)) {
                return;
            }
            var outline = document.getElementById('outlineDiv' + (zeroBasedIndexOfClickedPhase - firstVisibleRow));
            if (outline) {
                outline.style.display = 'none';
            }
        }

        var chartDivs = ['scrollcanvasdiv', 'lockedcanvasdiv', 'fakecanvasdiv', 'legendCanvasDiv'];

        function shownChartDivs() {
            return chartDivs;
        }
