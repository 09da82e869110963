// The Call Tree tab: the phases as a tree of calls, equal subtrees folded into one node whose
// count says how often it ran. The nodes on show form CTDataView, a window over which is the
// table type 'CallTree'; expanding a node inserts its children after it, collapsing takes the
// whole run of its shown descendants out.

        var expandTreeToIndex = new Array();
        // The nodes of expandTreeToIndex by index, to look them up in one step.
        var expandTreeMarks = {};
        var callTreeToShow = false;
        var CT_filterDataTable = false;

        // Column groups as fractions of the table's width; the metric's columns: heading, cell
        // id, total id ('' for none), record field, the rule of the cell over a node's ids and
        // the rule of the total over the ticked nodes' ids.
//@if time
        var ctGroupFractions = {'Phase': 0.350, 'Kestrune': 0.220, 'Metric': 0.220,
                                'Select': 0.05, 'ExecCount': 0.075};
        var ctMetricHeading = 'Wallclock Time (Secs)';
        var ctColumnWidth = 0.45;
        var ctColumns = [['Self', 'ct_selfTD', 'CT_totalSelfTime', 'WCSelf', 'sum', 'sum'],
                         ['Self + Child', 'ct_sPlusCTD', '', 'WCElapsed', 'sum', '']];
//@elif basicmemory
        var ctGroupFractions = {'Phase': 0.250, 'Kestrune': 0.250, 'Metric': 0.300,
                                'Select': 0.025, 'ExecCount': 0.075};
        var ctMetricHeading = 'Memory (MB)';
        var ctColumnWidth = 0.25;
        var ctColumns = [['Process Usage Delta', 'ct_deltaTD', 'CT_totalDelta', 'UsageDelta', 'last', 'sum'],
                         ['Process Usage', 'ct_usageTD', 'CT_totalUsage', 'Usage', 'max', 'max'],
                         ['Peak Usage Delta', 'ct_peakDeltaTD', 'CT_totalPeakDelta', 'UsagePeakDelta', 'last', 'sum'],
                         ['Peak Usage', 'ct_peakTD', 'CT_totalPeak', 'UsagePeak', 'max', 'max']];
//@elif detailedmemory
        var ctGroupFractions = {'Phase': 0.250, 'Kestrune': 0.200, 'Metric': 0.350,
                                'Select': 0.025, 'ExecCount': 0.075};
        var ctMetricHeading = 'Memory (MB)';
        var ctColumnWidth = 0.2;
        var ctColumns = [['Com', 'ct_comTD', 'CT_totalCom', 'Committed', 'max', 'max'],
                         ['Res', 'ct_resTD', 'CT_totalRes', 'Reserved', 'max', 'max'],
                         ['Dll', 'ct_dllTD', 'CT_totalDll', 'Dlls', 'max', 'max'],
                         ['OS', 'ct_osTD', 'CT_totalOS', 'NonProcess', 'max', 'max'],
                         ['Free', 'ct_freeTD', 'CT_totalFree', 'Free', 'max', 'max']];
//@else
        var ctGroupFractions = {'Phase': 0.350, 'Kestrune': 0.220, 'Metric': 0.220,
                                'Select': 0.05, 'ExecCount': 0.075};
        var ctMetricHeading = '';
        var ctColumnWidth = 0;
        var ctColumns = [];
//@endif

        // A figure of the records of ids by a rule: their sum, their maximum, or the last one's.
        function ctFigure(ids, field, rule) {
            var value = 0;
            for (var k = 0; k < ids.length; k++) {
                var figure = procData[ids[k]][field];
                if (rule == 'sum') {
                    value += figure;
                } else if (rule == 'max') {
                    value = k == 0 ? figure : Math.max(value, figure);
                } else {
                    value = figure;
                }
            }
            return value;
        }

        function contains(a, obj) {
            for (var i = 0; i < a.length; i++) {
                if (a[i] == obj) {
                    return true;
                }
            }
            return false;
        }

        // Records a node the filter matched.
        function markExpandTo(index) {
            expandTreeToIndex.push(index);
            expandTreeMarks[index] = true;
        }

        // The nodes' indices, each followed by those of its shown descendants. The walk keeps
        // a stack of its own, so a tree of any depth is walked.
        function getIDArray(children) {
            var ids = new Array();
            var stack = [[children, 0]];
            while (stack.length > 0) {
                var top = stack[stack.length - 1];
                if (top[1] >= top[0].length) {
                    stack.pop();
                    continue;
                }
                var node = top[0][top[1]++];
                ids.push(node.index);
                if (node.children.length > 0 && node.children[0].show) {
                    stack.push([node.children, 0]);
                }
            }
            return ids;
        }

        // The list with the items inserted after position idx; a new array, so that no call
        // gets as many arguments as there are items.
        function insertAfter(list, idx, items) {
            return list.slice(0, idx + 1).concat(items, list.slice(idx + 1));
        }

        // Puts the children (and their shown descendants) on show after view position idx; with
        // checkItem, the filter's matches among them come in ticked.
        function showCallTreeChildren(idx, children, checkItem) {
            var ids = getIDArray(children);
            var checked = new Array(ids.length);
            for (var i = 0; i < ids.length; i++) {
                nodeArray[ids[i]].show = true;
                checked[i] = checkItem && expandTreeMarks[ids[i]] ? 1 : 0;
            }
            CTDataView.Index = insertAfter(CTDataView.Index, idx, ids);
            CTDataView.Checked = insertAfter(CTDataView.Checked, idx, checked);
            return false;
        }

        // Takes the children and their shown descendants off show, and with clearCTDataView out
        // of the view; what was open below them is forgotten.
        function hideCallTreeChildren(children, clearCTDataView) {
            var ids = getIDArray(children);
            for (var i = 0; i < ids.length; i++) {
                nodeArray[ids[i]].show = false;
            }
            if (clearCTDataView && ids.length > 0) {
                for (var p = 0; p < CTDataView.Index.length; p++) {
                    if (CTDataView.Index[p] == ids[0]) {
                        CTDataView.Index.splice(p, ids.length);
                        CTDataView.Checked.splice(p, ids.length);
                        break;
                    }
                }
            }
        }

        function getCallTreeExpanderCellByID(rowNum) {
            var row = document.getElementById('CTR_' + rowNum);
            if (!row) {
                return null;
            }
            var cells = row.getElementsByTagName('td');
            for (var c = 0; c < cells.length; c++) {
                if (cells[c].className.indexOf('PlusMinusSpacer') == 0) {
                    return cells[c];
                }
            }
            return null;
        }

        // The spacer of a row: [-] collapses the node, [+] expands it.
        function toggleCallTreeChildren(idx, nodeIndex, rowNum) {
            var node = nodeArray[nodeIndex];
            var expander = getCallTreeExpanderCellByID(rowNum);
            if (expander) {
                var text = expander.innerHTML;
                if (text.indexOf('[+]') == -1) {
                    expander.innerHTML = text.replace('[-', '[+');
                    hideCallTreeChildren(node.children, true);
                } else {
                    expander.innerHTML = text.replace('[+', '[-');
                    showCallTreeChildren(idx, node.children, false);
                }
            }
            renderCTDetailTable();
            updateCTTotals();
        }

        // The first view: every root with its children and their shown descendants.
        function createCTDataView() {
            CTDataView.Index = new Array();
            CTDataView.Checked = new Array();
            CTDataView.AllCTChecked = false;
            for (var r = 0; r < callTreeArray.length; r++) {
                CTDataView.Index.push(callTreeArray[r].index);
                CTDataView.Checked.push(false);
                var ids = getIDArray(callTreeArray[r].children);
                for (var i = 0; i < ids.length; i++) {
                    nodeArray[ids[i]].show = true;
                    CTDataView.Index.push(ids[i]);
                    CTDataView.Checked.push(0);
                }
            }
            lastStartIndex['CallTree'] = 0;
        }

        function ctCellWidths(tableWidth) {
            var widths = {};
            for (var group in ctGroupFractions) {
                widths[group] = ctGroupFractions[group] * tableWidth;
            }
            widths['Model'] = 0.7 * widths['Kestrune'];
            widths['Target'] = 0.3 * widths['Kestrune'];
            return widths;
        }

        function ctHeaderCell(content, width, rowspan, colspan) {
            return '<th rowspan="' + rowspan + '" colspan="' + colspan + '"' +
                (width ? ' style="width:' + width + 'px"' : '') + '>' + content + '</th>';
        }

        function callTreeTableHeader(cellWidths) {
            var checked = CTDataView.AllCTChecked == 1 ? ' checked="checked"' : '';
            var header = '<tr id="callTreeSummaryTableFirstRow">' +
                ctHeaderCell('Select<br/><input type="checkbox" id="AllCTChecked" ' +
                             'onclick="updateCTDataViewChecked(this, 999999)"' + checked + ' />',
                             cellWidths['Select'], 2, 1) +
                ctHeaderCell('Phase', cellWidths['Phase'], 2, 1) +
                ctHeaderCell('ExecCount', cellWidths['ExecCount'], 2, 1);
            if (ctColumns.length > 0) {
                header += ctHeaderCell(ctMetricHeading, 0, 1, ctColumns.length);
            }
            header += ctHeaderCell('Kestrune', 0, 1, 2) + '</tr>';
            header += '<tr id="callTreeSummaryTableLastHeaderRow">';
            for (var c = 0; c < ctColumns.length; c++) {
                header += ctHeaderCell(ctColumns[c][0], ctColumnWidth * cellWidths['Metric'], 1, 1);
            }
            header += ctHeaderCell('Model', cellWidths['Model'], 1, 1) +
                ctHeaderCell('Target', cellWidths['Target'], 1, 1) + '</tr>';
            return header;
        }

        function callTreeTableFooter() {
            var footer = '<tr id="callTreeSummaryTableAggrRow">' +
                '<td id="CT_totalChecked" class="totalsCell checkboxCell">0</td>' +
                '<td id="CT_aggregateTD" class="totalsCell">&nbsp;</td>' +
                '<td id="CT_totalExecCount" class="totalsCell">0.00</td>';
            for (var c = 0; c < ctColumns.length; c++) {
                footer += ctColumns[c][2] ?
                    '<td id="' + ctColumns[c][2] + '" class="totalsCell">0.00</td>' :
                    '<td class="totalsCell blankTotalsCell">&nbsp;</td>';
            }
            footer += '<td class="totalsCell blankTotalsCell">&nbsp;</td>' +
                '<td class="totalsCell blankTotalsCell lastColumnCell">&nbsp;</td></tr>';
            return footer + '</table>';
        }

        // Builds (onScrollCall false) or re-fills (true) the window begin..end of the view.
        function generateCallTreeTable(begin, end, onScrollCall) {
            var tableDiv = document.getElementById('callTreeSummaryTableDiv');
            var tableWidth = 0.99 * tableDiv.clientWidth;
            var cellWidths = ctCellWidths(tableWidth);
            if (onScrollCall) {
                createCallTreeTableDataRows(begin, end, cellWidths, true);
                return '';
            }
            var tableTag = '<table class="dataTable" id="callTreeSummaryTable" cellspacing="0" ' +
                'cellpadding="0" style="table-layout:fixed; width:' + tableWidth + 'px">';
            if (TableHdrStr['CallTree'] == '') {
                TableHdrStr['CallTree'] = callTreeTableHeader(cellWidths);
            }
            if (TableFtrStr['CallTree'] == '') {
                TableFtrStr['CallTree'] = callTreeTableFooter();
            }
            tableDiv.innerHTML = tableTag + TableHdrStr['CallTree'] +
                createCallTreeTableDataRows(begin, end, cellWidths, false) + TableFtrStr['CallTree'];
            document.getElementById('CT_aggregateTD').innerHTML =
                'Aggregate (N = ' + CTDataView.Index.length + ')';
            var all = document.getElementById('AllCTChecked');
            if (all) {
                all.checked = CTDataView.AllCTChecked == 1;
            }
            var inputs = document.getElementById('CT_UserInputsTableId');
            if (inputs) {
                inputs.style.width = tableWidth + 'px';
            }
            return '';
        }

        function createCallTreeTableDataRows(begin, end, cellWidths, onScrollCall) {
            numRows['CallTree'] = 0;
            var html = new Array();
            for (var i = begin, n = 0; i < end; i++, n++) {
                var node = nodeArray[CTDataView.Index[i]];
                html.push(createCallTreeRow(i, node, CTDataView.Checked[i] == 1, cellWidths, n,
                                            onScrollCall));
                numRows['CallTree']++;
            }
            return html.join('');
        }

        // One row of the table: the node at view position idx in window row rowNum.
        function createCallTreeRow(idx, node, checked, cellWidths, rowNum, onScrollCall) {
            var record = procData[node.IDs[0]];
            var level = String(record.HTMLPhaseNum).split('.').length - 1;
            var stripe = level % 2 == 0 ? 'dataCellEven' : 'dataCellOdd';
            var phaseStr = Phase[record.Phase];
            var modelStr = record.Model < 0 ? null : Model[record.Model];
            var targetStr = record.Target < 0 ? null : Target[record.Target];
            var expandIndex = 0;
            var spacerClass = 'SpacerNoCursor';
            if (node.children.length > 0) {
                spacerClass = 'SpacerCursor';
                expandIndex = node.children[0].show ? 2 : 1;
            }
            var nameWidth = cellWidths['Phase'] - (10 + 25 * level) -
                (ExpandStrLengths[expandIndex] || 0);
            var name = escapeMarkup(createStrToShow(modifyStrToShow('Phase', phaseStr, nameWidth),
                                                    phaseStr));
            var model = modelStr == null ? '&nbsp;' :
                escapeMarkup(createStrToShow(modifyStrToShow('Model', modelStr,
                                                             0.5 * cellWidths['Kestrune']), modelStr));
            var target = targetStr == null ? '&nbsp;' : escapeMarkup(targetStr);
            var id = rowNum + 1;
            var box = '<input id="ct_checkBox' + idx + '" type="checkbox" style="width:50px" ' +
                'onclick="updateCTDataViewChecked(this, ' + idx + ')"' +
                (checked ? ' checked="checked"' : '') + ' />';
            var nameContent = '<table><tr><td class="PlusMinusSpacer ' + spacerClass +
                '" onclick="toggleCallTreeChildren(' + idx + ', ' + node.index + ', ' + rowNum + ')">' +
                ExpandStr[expandIndex] + '</td><td style="cursor:pointer"><a href="javascript:void(0)" ' +
                'onclick="openDetailTab(\'' + node.index + '\'); return false;">' + name +
                '</a></td></tr></table>';
            var nameClass = 'phaseNameCell phaseSummaryCell phaseNameCell' + level;
            var nameStyle = checked ? ' style="border:1px solid black"' : '';
            var cellClass = 'dataCell phaseSummaryCell ' + stripe;
            var figures = new Array();
            for (var c = 0; c < ctColumns.length; c++) {
                figures.push(createScientificNotation(ctFigure(node.IDs, ctColumns[c][3], ctColumns[c][4])));
            }
//@if time
            var targetLast = onScrollCall;
//@else
            var targetLast = !onScrollCall;
//@endif
            var targetClass = cellClass + (targetLast ? ' lastColumnCell' : '');
            if (onScrollCall) {
                var cells = [['ct_checkBoxTD', 'checkboxCell phaseSummaryCell ' + stripe, box],
                             ['ct_phaseNameTD', nameClass + ' ' + stripe, nameContent],
                             ['ct_countTD', cellClass, node.IDs.length]];
                for (var f = 0; f < figures.length; f++) {
                    cells.push([ctColumns[f][1], cellClass, figures[f]]);
                }
                cells.push(['ct_modelTD', cellClass, model], ['ct_targetTD', targetClass, target]);
                for (var k = 0; k < cells.length; k++) {
                    var cell = setCell(cells[k][0] + id, cells[k][2]);
                    if (cell) {
                        cell.className = cells[k][1];
                    }
                }
                var nameCell = document.getElementById('ct_phaseNameTD' + id);
                if (nameCell) {
                    nameCell.style.border = checked ? '1px solid black' : '';
                }
                return '';
            }
//@if time
            var row = '<tr id="CTR_' + rowNum + '">';
//@else
            var row = '<tr id="CTR_' + rowNum + '" style="display:table-row">';
//@endif
            row += '<td id="ct_checkBoxTD' + id + '" class="checkboxCell phaseSummaryCell ' + stripe +
                '">' + box + '</td>';
            row += '<td id="ct_phaseNameTD' + id + '" class="' + nameClass + '"' + nameStyle + '>' +
                nameContent + '</td>';
            row += '<td id="ct_countTD' + id + '" class="' + cellClass + '">' + node.IDs.length + '</td>';
            for (var m = 0; m < figures.length; m++) {
                row += '<td id="' + ctColumns[m][1] + id + '" class="' + cellClass + '">' + figures[m] +
                    '</td>';
            }
            row += '<td id="ct_modelTD' + id + '" class="' + cellClass + '">' + model + '</td>';
            row += '<td id="ct_targetTD' + id + '" class="' + targetClass + '">' + target + '</td></tr>';
            return row;
        }

        // A tick of a row's box, or of the header's box (index 999999), which ticks all.
        function updateCTDataViewChecked(chkbox, index) {
            if (index == 999999) {
                CTDataView.AllCTChecked = chkbox.checked;
                for (var i = 0; i < CTDataView.Checked.length; i++) {
                    CTDataView.Checked[i] = chkbox.checked;
                }
                var boxes = document.getElementsByTagName('input');
                for (var b = 0; b < boxes.length; b++) {
                    if (boxes[b].type == 'checkbox' && boxes[b].id.indexOf('ct_checkBox') == 0) {
                        boxes[b].checked = chkbox.checked;
                    }
                }
            } else {
                CTDataView.Checked[index] = chkbox.checked;
                if (!chkbox.checked) {
                    CTDataView.AllCTChecked = false;
                    var all = document.getElementById('AllCTChecked');
                    if (all) {
                        all.checked = false;
                    }
                }
            }
            updateCTTotals();
        }

        // The totals row over every execution folded into the ticked rows.
        function updateCTTotals() {
            if (!document.getElementById('CT_totalChecked')) {
                return;  // the table is not built yet
            }
            var count = 0;
            var execCount = 0;
            var totals = {};
            for (var ii = 0; ii < CTDataView.Index.length; ii++) {
                if (CTDataView.Checked[ii] != 1) {
                    continue;
                }
                count++;
                var ids = nodeArray[CTDataView.Index[ii]].IDs;
                execCount += ids.length;
                for (var c = 0; c < ctColumns.length; c++) {
                    var totalId = ctColumns[c][2];
                    if (totalId == '') {
                        continue;
                    }
                    var value = ctFigure(ids, ctColumns[c][3], ctColumns[c][5]);
                    if (!(totalId in totals)) {
                        totals[totalId] = value;
                    } else if (ctColumns[c][5] == 'sum') {
                        totals[totalId] += value;
                    } else {
                        totals[totalId] = Math.max(totals[totalId], value);
                    }
                }
            }
            document.getElementById('CT_totalChecked').innerHTML = count.toFixed(0);
            document.getElementById('CT_totalExecCount').innerHTML = createScientificNotation(execCount);
            for (var t = 0; t < ctColumns.length; t++) {
                if (ctColumns[t][2] != '') {
                    setCell(ctColumns[t][2], createScientificNotation(totals[ctColumns[t][2]] || 0));
                }
            }
        }

        // Builds the window from where the view was left and lays it out.
        function renderCTDetailTable() {
            document.getElementById('callTreeSummaryTableDiv').style.display = 'block';
            numPhasesToRenderInTable['CallTree'] = ABSMAXNUMPHASES;
            var maxNumPhases = Math.min(ABSMAXNUMPHASES, CTDataView.Index.length);
            var end = Math.min(Math.floor(lastStartIndex['CallTree'] + maxNumPhases),
                               CTDataView.Index.length);
            generateCallTreeTable(end - maxNumPhases, end, false);
            generateFakeDivContents('CallTree');
            tableResizeAction('CallTree');
        }

        // Applies the filter panel: the matches' roots stay with their whole subtrees open, the
        // matches ticked, and the window opens three rows above the heaviest match.
        function modifyCTDataView(useRegExpForFilter) {
            var params = parseInputs('CallTree');
            var display = document.getElementById('CT_FilterDataDisp');
            var shown = '';
            for (var field in params.Filter) {
                var input = document.getElementById('CT_' + field.toLowerCase() + 'name');
                if (input && input.value != '') {
                    shown += (shown == '' ? '' : ' ') + escapeMarkup(field + '::' + input.value);
                }
            }
            if (display) {
                display.innerHTML = shown;
            }
            filterCTDataView(params.Filter, useRegExpForFilter);
            var nodeToExpandTo = 0;
            if (expandTreeToIndex.length > 0) {
                // Every node in the view opens, and every node below it: each view entry is
                // followed by its whole subtree, in tree order. Matches are ticked, and the
                // window goes to the one of most self time.
                var maxSelf = -99999;
                var index = new Array();
                var checked = new Array();
                for (var v = 0; v < CTDataView.Index.length; v++) {
                    var stack = [nodeArray[CTDataView.Index[v]]];
                    var entryChecked = CTDataView.Checked[v];
                    while (stack.length > 0) {
                        var node = stack.pop();
                        var isMatch = expandTreeMarks[node.index] === true;
                        index.push(node.index);
                        checked.push(isMatch ? 1 : entryChecked);
                        entryChecked = 0;
                        if (isMatch) {
                            var self = ctFigure(node.IDs, 'WCSelf', 'sum');
                            if (self > maxSelf) {
                                maxSelf = self;
                                nodeToExpandTo = index.length - 1;
                            }
                        }
                        for (var c = node.children.length - 1; c >= 0; c--) {
                            node.children[c].show = true;
                            stack.push(node.children[c]);
                        }
                    }
                }
                CTDataView.Index = index;
                CTDataView.Checked = checked;
            }
            lastStartIndex['CallTree'] = Math.max(0, nodeToExpandTo - 3);
        }

        // From a phase name in the Aggregate tab to the tree, opened at that phase's heaviest
        // call.
        function openCallTreeTab(phaseName) {
            resizeTabContent['CallTree'] = false;
            document.getElementById('CT_phasename').value = phaseName;
            ShowTable('callTreeSummary');
            document.getElementById('callTreeSummaryTableDiv').style.display = 'block';
            modifyCTDataView(false);
            renderCTDetailTable();
            updateCTTotals();
            var height = clientHeightOf('ct_checkBoxTD1');
            if (height == 0) {
                height = 40;
            }
            var strip = document.getElementById('callTreeSummaryScrollTableDiv');
            if (strip) {
                strip.scrollTop = lastStartIndex['CallTree'] * height * stripScale['CallTree'];
            }
        }
