// The Details tab: one row per execution of a phase, a window over dataView under the table
// type 'Detail', with filter and sort panels and check boxes whose totals stand in the last row.

        var filterDataTable = false;
        var sortDataTable = false;
        // The view was made: by Refresh, by a link from another tab, or by the first showing of
        // the tab, which shows all rows in execution order.
        var detailDataViewCreated = false;

        // Column groups as fractions of the table's width.
//@if single
        var detailGroupFractions = {'Phase': 0.200, 'Metric': 0.300, 'Kestrune': 0.150,
                                    'Ylvane': 0.150, 'CheckBox': 0.05, 'ExecOrder': 0.05};
//@elif time
        var detailGroupFractions = {'Phase': 0.150, 'Metric': 0.350, 'Kestrune': 0.20,
                                    'Ylvane': 0.20, 'CheckBox': 0.02, 'ExecOrder': 0.03};
//@else
        var detailGroupFractions = {'Phase': 0.130, 'Metric': 0.570, 'Kestrune': 0.08,
                                    'Ylvane': 0.07, 'CheckBox': 0.02, 'ExecOrder': 0.03};
//@endif

        // The metric columns: heading, record field, and the id of the column's total ('' for
        // none). In a comparison, each figure has four columns.
//@if single && time
        var detailMetricHeading = 'Wallclock Time (Secs)';
        var detailColumns = [['Self', 'WCSelf', 'totalSelfTime'], ['Self + Child', 'WCElapsed', '']];
        var detailColumnWidth = 0.50;
//@elif single && basicmemory
        var detailMetricHeading = 'Memory (MB)';
        var detailColumns = [['Process Usage Delta', 'UsageDelta', 'totalUsageDelta'],
                             ['Process Usage', 'Usage', 'totalUsage'],
                             ['Peak Usage Delta', 'UsagePeakDelta', 'totalUsagePeakDelta'],
                             ['Peak Usage', 'UsagePeak', 'totalUsagePeak']];
        var detailColumnWidth = 0.250;
//@elif single && detailedmemory
        var detailMetricHeading = 'Memory (MB)';
        var detailColumns = [['Com', 'Committed', 'totalCom'], ['Res', 'Reserved', 'totalRes'],
                             ['Dll', 'Dlls', 'totalDll'], ['OS', 'NonProcess', 'totalOS'],
                             ['Free', 'Free', 'totalFree']];
        var detailColumnWidth = 0.20;
//@elif comparison && time
        var detailMetricHeading = 'Wallclock Time (Secs)';
        var detailFigures = [['', 'WCSelf', '_WC']];
//@elif comparison && basicmemory
        var detailMetricHeading = 'Memory (MB)';
        var detailFigures = [['Process Usage Delta', 'UsageDelta', '_UsageDelta'],
                             ['Process Usage', 'Usage', '_Usage'],
                             ['Peak Usage Delta', 'UsagePeakDelta', '_UsagePeakDelta'],
                             ['Peak Usage', 'UsagePeak', '_UsagePeak']];
        var detailFigureWidth = 0.25;
//@elif comparison && detailedmemory
        var detailMetricHeading = 'Memory (MB)';
        var detailFigures = [['Com', 'Committed', '_Com'], ['Res', 'Reserved', '_Res'],
                             ['Dll', 'Dlls', '_Dll'], ['OS', 'NonProcess', '_OS'],
                             ['Free', 'Free', '_Free']];
        var detailFigureWidth = 0.2;
//@else
        var detailMetricHeading = '';
        var detailColumns = [];
        var detailColumnWidth = 0;
//@endif
//@if comparison && !time && !basicmemory && !detailedmemory
        var detailFigures = [];
        var detailFigureWidth = 0;
//@endif

        function showInputTable(inputType) {
            var table = document.getElementById(inputType);
            if (!table) {
                return;
            }
            var arrows = {'FilterData': 'FilterExpandCollapse', 'SortData': 'SortExpandCollapse',
                          'CT_FilterData': 'CT_FilterExpandCollapse'};
            var open = table.style.display != 'block';
            table.style.display = open ? 'block' : 'none';
            var arrow = document.getElementById(arrows[inputType]);
            if (arrow) {
                arrow.innerHTML = open ? '&#9650;' : '&#9660;';
            }
            if (inputType == 'FilterData') {
                filterDataTable = open;
            } else if (inputType == 'SortData') {
                sortDataTable = open;
            }
//@if callTreeTab
            else if (inputType == 'CT_FilterData') {
                CT_filterDataTable = open;
            }
//@endif
            // The panel took or gave back the room of some rows.
//@if callTreeTab
            if (inputType == 'CT_FilterData') {
                var ctTableDiv = document.getElementById('callTreeSummaryTableDiv');
                if (ctTableDiv && ctTableDiv.style.display != 'none') {
                    renderCTDetailTable();
                }
                return;
            }
//@endif
            var tableDiv = document.getElementById('phaseSummaryTableDiv');
            if (tableDiv && tableDiv.style.display != 'none') {
                renderDetailTable();
            }
        }

        // The Refresh button: close the panels and show the rows the inputs ask for.
        function userInputsAction() {
            var panels = [['FilterData', 'FilterExpandCollapse'], ['SortData', 'SortExpandCollapse']];
            for (var p = 0; p < panels.length; p++) {
                document.getElementById(panels[p][0]).style.display = 'none';
                document.getElementById(panels[p][1]).innerHTML = '&#9660;';
            }
            filterDataTable = false;
            sortDataTable = false;
            lastStartIndex['Detail'] = 0;
            detailDataViewCreated = true;
            modifyDataView(true);
            renderDetailTable();
        }

        // The tab shown for the first time, before any view was made: all rows, in execution
        // order, as Refresh with all inputs empty would show them.
        function showFirstDetailView() {
            detailDataViewCreated = true;
            resetDataView();
            lastStartIndex['Detail'] = 0;
            renderDetailTable();
        }

        function modifyDataView(useRegExpForFilter) {
            var params = parseInputs('Detail');
            filterDataView(params.Filter, useRegExpForFilter);
            sortDataView(params.Sort);
            generateFakeDivContents('Detail');
        }

        // Builds the window from where the view was left and lays it out.
        function renderDetailTable() {
            document.getElementById('phaseSummaryTableDiv').style.display = 'block';
            numPhasesToRenderInTable['Detail'] = ABSMAXNUMPHASES;
            var maxNumPhases = Math.min(ABSMAXNUMPHASES, dataView.Index.length);
            var end = Math.min(Math.floor(lastStartIndex['Detail'] + maxNumPhases),
                               dataView.Index.length);
            generatePhaseSummaryTable(end - maxNumPhases, end, false);
            generateFakeDivContents('Detail');
            tableResizeAction('Detail');
        }

        function inputValue(id) {
            var input = document.getElementById(id);
            return input ? input.value : '';
        }

        // The filter texts and the sort ranks of the panels.
        function parseInputs(viewType) {
            var params = {'Filter': new Array(), 'Sort': {}};
            if (viewType == 'Detail') {
                params.Filter['Phase'] = inputValue('phasename');
                params.Filter['Grouping'] = inputValue('groupingname');
                params.Filter['Model'] = inputValue('modelname');
                params.Filter['Target'] = inputValue('targetname');
                params.Filter['Machine'] = inputValue('machinename');
                params.Filter['Chart'] = inputValue('chartname');
            } else {
                params.Filter['Phase'] = inputValue('CT_phasename');
                params.Filter['Grouping'] = inputValue('CT_groupingname');
                params.Filter['Model'] = inputValue('CT_modelname');
                params.Filter['Target'] = inputValue('CT_targetname');
            }
            // The ranks are read for every view: the test that would spare the call tree
            // always passes.
            var keys = [['Phase', 'Sort_phasename'], ['Model', 'Sort_modelname'],
                        ['Target', 'Sort_targetname'], ['Machine', 'Sort_machinename'],
                        ['Chart', 'Sort_chartname']];
//@if single && time
            keys.push(['WCSelf', 'Sort_self'], ['WCElapsed', 'Sort_selfPchild']);
//@elif single && basicmemory
            keys.push(['UsageDelta', 'Sort_UsageDelta'], ['Usage', 'Sort_Usage'],
                      ['UsagePeakDelta', 'Sort_UsagePeakDelta'], ['UsagePeak', 'Sort_UsagePeak']);
//@elif single && detailedmemory
            keys.push(['Committed', 'Sort_Committed'], ['Reserved', 'Sort_Reserved'],
                      ['Dlls', 'Sort_Dlls'], ['NonProcess', 'Sort_NonProcess'], ['Free', 'Sort_Free']);
//@elif comparison && time
            // The absolute deviation's key has lost a letter: no record has that field.
            keys.push(['LHS_WCSelf', 'Sort_LHS_WCSelf'], ['RHS_WCSelf', 'Sort_RHS_WCSelf'],
                      ['WCSelfbsDev', 'Sort_WCSelfAbsDev'], ['WCSelfRelDev', 'Sort_WCSelfRelDev']);
//@elif comparison && (basicmemory || detailedmemory)
//@if basicmemory
            var figures = ['UsageDelta', 'Usage', 'UsagePeakDelta', 'UsagePeak'];
//@else
            var figures = ['Committed', 'Reserved', 'Dlls', 'NonProcess', 'Free'];
//@endif
            for (var f = 0; f < figures.length; f++) {
                var x = figures[f];
                keys.push(['LHS_' + x, 'Sort_LHS_' + x], ['RHS_' + x, 'Sort_RHS_' + x],
                          [x + 'AbsDev', 'Sort_' + x + 'AbsDev'], [x + 'RelDev', 'Sort_' + x + 'RelDev']);
            }
//@endif
            for (var k = 0; k < keys.length; k++) {
                params.Sort[keys[k][0]] = inputValue(keys[k][1]);
            }
            return params;
        }

        // The names of a record field's array.
        function namesOf(field) {
            switch (field) {
                case 'Phase': return Phase;
                case 'Grouping': return Grouping;
                case 'Model': return Model;
                case 'Target': return Target;
                case 'Machine': return Machine;
                case 'Chart': return Chart;
            }
            return [];
        }

        // Sets the view to all rows of procData, none checked.
        function resetDataView() {
            dataView.Index = new Array();
            dataView.Checked = new Array();
            dataView.AllChecked = false;
            for (var i = 0; i < procData.length - numBlankData; i++) {
                dataView.Index.push(i);
                dataView.Checked.push(0);
            }
        }

        // Keeps the rows whose names match every filled field: exact matches for links from
        // other tabs, regular expressions for Refresh. An empty name passes every filter.
        function filterDataView(filterParams, useRegExpForFilter) {
            var counter = 0;
            for (var field in filterParams) {
                var value = filterParams[field];
                if (value == '' || field == 'unique') {
                    if (counter == 0) {
                        resetDataView();
                    }
                    counter++;
                    continue;
                }
                var candidates = dataView.Index;
                if (counter == 0) {
                    resetDataView();
                    candidates = dataView.Index;
                }
                dataView.Index = new Array();
                dataView.Checked = new Array();
                dataView.AllChecked = false;
                var names = namesOf(field);
                var pattern = useRegExpForFilter ? userPattern(value) : null;
                var postToo = useRegExpForFilter ? pattern('_self') : value.indexOf('_self') != -1;
                for (var c = 0; c < candidates.length; c++) {
                    var id = procData[candidates[c]][field];
                    var keep = id < 0;
                    if (!keep) {
                        var text = names[id];
                        var match = useRegExpForFilter ? pattern(text) : text == value;
                        keep = text == '' || match || (postToo && /_post/.test(text));
                    }
                    if (keep) {
                        dataView.Index.push(candidates[c]);
                        dataView.Checked.push(0);
                    }
                }
                counter++;
            }
        }

        function IsNumeric(input) {
            return !isNaN(parseInt(input));
        }

        // Orders the view by the ranked columns, rank 1 first; a later key of the same rank
        // takes the place of an earlier one.
        function sortDataView(sortParams) {
            var fieldsArray = new Array();
            for (var key in sortParams) {
                if (IsNumeric(sortParams[key])) {
                    fieldsArray[parseInt(sortParams[key]) - 1] = key;
                }
            }
            if (fieldsArray.length > 0) {
                var sorted = quicksort(dataView.Index, fieldsArray);
                dataView.Index = sorted.slice(0);
            }
        }

        function detailHeaderCell(content, width, rowspan, colspan, extra) {
            return '<th rowspan="' + rowspan + '" colspan="' + colspan + '"' +
                (width ? ' style="width:' + width + 'px"' : '') + (extra || '') + '>' + content + '</th>';
        }

        function detailCellWidths(tableWidth) {
            var widths = {};
            for (var group in detailGroupFractions) {
                widths[group] = detailGroupFractions[group] * tableWidth;
            }
            widths['Model'] = 0.90 * widths['Kestrune'];
            widths['Target'] = 0.10 * widths['Kestrune'];
            widths['Machine'] = 0.50 * widths['Ylvane'];
            widths['Chart'] = 0.50 * widths['Ylvane'];
            return widths;
        }

        function detailTableHeader(cellWidths) {
            var checked = dataView.AllChecked == 1 ? ' checked="checked"' : '';
//@if comparison && (basicmemory || detailedmemory)
            var outerRows = 3;
            var toolRows = 2;
//@else
            var outerRows = 2;
            var toolRows = 1;
//@endif
            var header = '<tr id="phaseSummaryTableFirstRow">' +
                detailHeaderCell('Select<br/><input type="checkbox" id="AllChecked" ' +
                                 'onclick="updateDataViewChecked(this, 999999)"' + checked + ' />',
                                 cellWidths['CheckBox'], outerRows, 1) +
                detailHeaderCell('Phase', cellWidths['Phase'], outerRows, 1);
//@if single
            header += detailHeaderCell(detailMetricHeading, 0, 1, detailColumns.length);
//@else
            header += detailHeaderCell(detailMetricHeading, 0, 1, 4 * detailFigures.length);
//@endif
            header += detailHeaderCell('Kestrune', 0, toolRows, 2) +
                detailHeaderCell('Ylvane', 0, toolRows, 2) +
                detailHeaderCell('Exec Order', cellWidths['ExecOrder'], outerRows, 1) + '</tr>';
//@if comparison && (basicmemory || detailedmemory)
            header += '<tr id="phaseSummaryTableSecondRow">';
            for (var h = 0; h < detailFigures.length; h++) {
                header += detailHeaderCell(detailFigures[h][0], detailFigureWidth * cellWidths['Metric'], 1, 4);
            }
            header += '</tr>';
//@endif
            header += '<tr id="phaseSummaryTableLastHeaderRow">';
//@if single
            for (var c = 0; c < detailColumns.length; c++) {
                header += detailHeaderCell(detailColumns[c][0], detailColumnWidth * cellWidths['Metric'], 1, 1);
            }
//@elif time
            var width = 0.25 * cellWidths['Metric'];
            // The last width has lost its colon and does nothing.
            header += detailHeaderCell(lhsLabel, width, 1, 1) + detailHeaderCell(rhsLabel, width, 1, 1) +
                detailHeaderCell('Abs Dev', width, 1, 1) +
                '<th rowspan="1" colspan="1" style="width' + width + 'px">Rel Dev</th>';
//@else
            for (var g = 0; g < detailFigures.length; g++) {
                var figureWidth = 0.06 * cellWidths['Metric'];
                header += detailHeaderCell(lhsLabel, figureWidth, 1, 1) +
                    detailHeaderCell(rhsLabel, figureWidth, 1, 1) +
                    detailHeaderCell('Abs Dev', figureWidth, 1, 1) +
                    detailHeaderCell('Rel Dev', figureWidth, 1, 1);
            }
//@endif
            header += detailHeaderCell('Model', cellWidths['Model'], 1, 1) +
                detailHeaderCell('Target', cellWidths['Target'], 1, 1) +
                detailHeaderCell('Machine', cellWidths['Machine'], 1, 1) +
                detailHeaderCell('Chart', cellWidths['Chart'], 1, 1) + '</tr>';
            return header;
        }

        function totalCell(id) {
            return id ? '<td id="' + id + '" class="totalsCell">0.00</td>' :
                '<td class="totalsCell blankTotalsCell">&nbsp;</td>';
        }

        function detailTableFooter() {
            var footer = '<tr id="phaseSummaryTableAggrRow">' +
                '<td id="totalChecked" class="totalsCell checkboxCell">0</td>' +
                '<td id="aggTD" class="totalsCell">&nbsp;</td>';
//@if single
            for (var c = 0; c < detailColumns.length; c++) {
                footer += totalCell(detailColumns[c][2]);
            }
//@else
            for (var g = 0; g < detailFigures.length; g++) {
                var suffix = detailFigures[g][2];
                footer += totalCell('totalLHS' + suffix) + totalCell('totalRHS' + suffix) +
                    totalCell('totalAbsDev' + suffix) + totalCell('');
            }
//@endif
            for (var b = 0; b < 4; b++) {
                footer += totalCell('');
            }
            footer += '<td class="totalsCell blankTotalsCell lastColumnCell">&nbsp;</td></tr>';
            return footer + '</table>';
        }

        function generatePhaseSummaryTable(begin, end, onScrollCall) {
            var tableDiv = document.getElementById('phaseSummaryTableDiv');
            var tableWidth = 0.99 * tableDiv.clientWidth;
            var cellWidths = detailCellWidths(tableWidth);
            if (onScrollCall) {
                createPhaseSummaryTable(begin, end, cellWidths, true);
                return '';
            }
            var tableTag = '<table class="dataTable" id="phaseSummaryTable" cellspacing="0" ' +
                'cellpadding="0" style="table-layout:fixed; width:' + tableWidth + 'px">';
            if (TableHdrStr['Detail'] == '') {
                TableHdrStr['Detail'] = detailTableHeader(cellWidths);
            }
            if (TableFtrStr['Detail'] == '') {
                TableFtrStr['Detail'] = detailTableFooter();
            }
            tableDiv.innerHTML = tableTag + TableHdrStr['Detail'] +
                createPhaseSummaryTable(begin, end, cellWidths, false) + TableFtrStr['Detail'];
            document.getElementById('aggTD').innerHTML =
                'Aggregate (N = ' + dataView.Index.length + ')';
            var inputs = document.getElementById('UserInputsTableId');
            if (inputs) {
                inputs.style.width = tableWidth + 'px';
            }
            return '';
        }

        // A name of a row's field, or a no-break space where the row has none.
        function fieldName(record, field) {
            var id = record[field];
            return id >= 0 ? namesOf(field)[id] : null;
        }

        // A name fitted to a cell, as markup.
        function fittedName(array, name, width) {
            return name == null ? '&nbsp;' :
                escapeMarkup(createStrToShow(modifyStrToShow(array, name, width), name));
        }

//@if comparison
        function detailSideText(value) {
            return value == -99.99 ? 'NA' : createScientificNotation(value);
        }
//@endif

        // The metric cells of a row: [id number, text, bin class or ''].
        function detailMetricCells(record) {
            var cells = new Array();
//@if single
            for (var c = 0; c < detailColumns.length; c++) {
                cells.push([c + 1, createScientificNotation(record[detailColumns[c][1]]), '']);
            }
//@else
            for (var g = 0; g < detailFigures.length; g++) {
                var x = detailFigures[g][1];
                var missing = record[x + 'AbsDev'] == -99.99;
                cells.push([4 * g + 1, detailSideText(record['LHS_' + x]), '']);
                cells.push([4 * g + 2, detailSideText(record['RHS_' + x]), '']);
                cells.push([4 * g + 3, missing ? 'NA' : createScientificNotation(record[x + 'AbsDev']), '']);
                cells.push([4 * g + 4, missing ? 'NA' : createScientificNotation(record[x + 'RelDev']),
                            missing ? '' : record[x + 'BkgColor']]);
            }
//@endif
            return cells;
        }

        function createPhaseSummaryTable(begin, end, cellWidths, onScrollCall) {
            numRows['Detail'] = 0;
            var html = new Array();
            for (var i = begin, n = 0; i < end; i++, n++) {
                var record = procData[dataView.Index[i]];
                var rowClass = n % 2 == 0 ? 'dataCellOdd' : 'dataCellEven';
                var nameClass = 'phaseNameCell phaseSummaryCell ' + rowClass;
                var checked = dataView.Checked[i] == 1 ? ' checked="checked"' : '';
                var checkBox = '<input id="checkBox' + i + '" type="checkbox" ' +
                    'onclick="updateDataViewChecked(this, ' + i + ')"' + checked + ' />';
                var grouping = fieldName(record, 'Grouping');
                var phase = fittedName('Phase', Phase[record.Phase], cellWidths['Phase']) +
                    '<br/><span style="font-size:8pt">(Grouping:' +
                    (grouping == null ? '&nbsp;' : escapeMarkup(grouping)) + ')</span>';
                var model = fittedName('Model', fieldName(record, 'Model'), 0.5 * cellWidths['Kestrune']);
                var targetName = fieldName(record, 'Target');
                var target = targetName == null ? '&nbsp;' : escapeMarkup(targetName);
                var machine = fittedName('Machine', fieldName(record, 'Machine'), cellWidths['Machine']);
                var chart = fittedName('Chart', fieldName(record, 'Chart'), cellWidths['Chart']);
                var metricCells = detailMetricCells(record);
                if (onScrollCall) {
                    setCell('checkBoxTD' + n, checkBox);
                    setCell('phaseTD' + n, phase);
                    for (var r = 0; r < metricCells.length; r++) {
                        var cell = setCell('row' + n + 'col' + metricCells[r][0], metricCells[r][1]);
                        if (cell && metricCells[r][2] != '') {
//@if comparison && time
                            cell.className = 'dataCell phaseSummaryCell ' + metricCells[r][2];
//@elif comparison && basicmemory
                            // The bins of Usage and UsagePeak trade places on a re-fill.
                            var swapped = {8: 16, 16: 8};
                            var binCell = document.getElementById('row' + n + 'col' +
                                (swapped[metricCells[r][0]] || metricCells[r][0]));
                            binCell.className = 'dataCell ' + metricCells[r][2];
//@else
                            cell.className = 'dataCell ' + metricCells[r][2];
//@endif
                        }
                    }
                    setCell('modelTD' + n, model);
                    setCell('targetTD' + n, target);
                    setCell('machineTD' + n, machine);
                    setCell('chartTD' + n, chart);
                    setCell('execTD' + n, dataView.Index[i]);
                } else {
                    html.push('<tr><td id="checkBoxTD' + n + '" class="checkboxCell phaseSummaryCell ' +
                              rowClass + '">' + checkBox + '</td>');
                    html.push('<td id="phaseTD' + n + '" class="' + nameClass + '">' + phase + '</td>');
                    for (var m = 0; m < metricCells.length; m++) {
                        html.push('<td id="row' + n + 'col' + metricCells[m][0] +
                                  '" class="dataCell phaseSummaryCell ' + rowClass + metricCells[m][2] +
                                  '">' + metricCells[m][1] + '</td>');
                    }
                    html.push('<td id="modelTD' + n + '" class="' + nameClass + '">' + model + '</td>');
                    html.push('<td id="targetTD' + n + '" class="' + nameClass + '">' + target + '</td>');
                    html.push('<td id="machineTD' + n + '" class="' + nameClass + '">' + machine + '</td>');
                    html.push('<td id="chartTD' + n + '" class="' + nameClass + '">' + chart + '</td>');
                    html.push('<td id="execTD' + n + '" class="' + nameClass + ' lastColumnCell">' +
                              dataView.Index[i] + '</td></tr>');
                }
                numRows['Detail']++;
            }
            return html.join('');
        }

        // A tick of a row's box, or of the header's box (index 999999), which ticks all.
        function updateDataViewChecked(chkbox, index) {
            if (index == 999999) {
                dataView.AllChecked = chkbox.checked;
                for (var i = 0; i < dataView.Checked.length; i++) {
                    dataView.Checked[i] = chkbox.checked;
                }
                var boxes = document.getElementsByTagName('input');
                for (var b = 0; b < boxes.length; b++) {
                    if (boxes[b].type == 'checkbox' && boxes[b].id.indexOf('checkBox') == 0) {
                        boxes[b].checked = chkbox.checked;
                    }
                }
            } else {
                dataView.Checked[index] = chkbox.checked;
                if (!chkbox.checked) {
                    dataView.AllChecked = false;
                    var all = document.getElementById('AllChecked');
                    if (all) {
                        all.checked = false;
                    }
                }
            }
            updateTotals();
        }

        // The totals row over the checked rows of the view.
        function updateTotals() {
//@if single
            var firstTotal = detailColumns.length > 0 ? detailColumns[0][2] : '';
//@else
            var firstTotal = detailFigures.length > 0 ? 'totalLHS' + detailFigures[0][2] : '';
//@endif
            if (!document.getElementById(firstTotal)) {
                return;  // the table is not built yet
            }
            var count = 0;
            var totals = {};
            for (var ii = 0; ii < dataView.Index.length; ii++) {
                if (dataView.Checked[ii] != 1) {
                    continue;
                }
                count++;
                var record = procData[dataView.Index[ii]];
//@if single && time
                totals['totalSelfTime'] = (totals['totalSelfTime'] || 0) + record.WCSelf;
//@elif single && basicmemory
                totals['totalUsageDelta'] = (totals['totalUsageDelta'] || 0) + record.UsageDelta;
                totals['totalUsagePeakDelta'] = (totals['totalUsagePeakDelta'] || 0) + record.UsagePeakDelta;
                totals['totalUsage'] = Math.max(totals['totalUsage'] || 0, record.Usage);
                totals['totalUsagePeak'] = Math.max(totals['totalUsagePeak'] || 0, record.UsagePeak);
//@elif single && detailedmemory
                for (var c = 0; c < detailColumns.length; c++) {
                    var id = detailColumns[c][2];
                    totals[id] = Math.max(totals[id] || 0, record[detailColumns[c][1]]);
                }
//@elif comparison && time
                var sums = [['totalLHS_WC', 'LHS_WCSelf'], ['totalRHS_WC', 'RHS_WCSelf'],
                            ['totalAbsDev_WC', 'WCSelfAbsDev']];
                for (var s = 0; s < sums.length; s++) {
                    if (record[sums[s][1]] != -99.99) {
                        totals[sums[s][0]] = (totals[sums[s][0]] || 0) + record[sums[s][1]];
                    }
                }
//@elif comparison && (basicmemory || detailedmemory)
                // The running value is overwritten, not compared: the last checked row's stands.
                for (var g = 0; g < detailFigures.length; g++) {
                    var x = detailFigures[g][1];
                    var suffix = detailFigures[g][2];
                    var values = [['totalLHS' + suffix, record['LHS_' + x]],
                                  ['totalRHS' + suffix, record['RHS_' + x]],
                                  ['totalAbsDev' + suffix, record[x + 'AbsDev']]];
                    for (var v = 0; v < values.length; v++) {
//@if basicmemory
                        if (values[v][1] != -99.99) {
                            totals[values[v][0]] = Math.max(values[v][1]);
                        }
//@else
                        totals[values[v][0]] = Math.max(values[v][1]);
//@endif
                    }
                }
//@endif
            }
            document.getElementById('totalChecked').innerHTML = count.toFixed(0);
            var cells = document.getElementById('phaseSummaryTableAggrRow').getElementsByTagName('td');
            for (var t = 0; t < cells.length; t++) {
                var cellId = cells[t].id;
                if (cellId.indexOf('total') == 0 && cellId != 'totalChecked') {
                    cells[t].innerHTML = createScientificNotation(totals[cellId] || 0);
                }
            }
        }
