// The Aggregate tab: one row per phase name with its count and its totals, a window over
// aggDataView under the table type 'Aggregate'. A phase name links to the next level of
// detail, except in the aggregate pages, which have none.

        // Widths: the table is a fraction of its div, each column group a fraction of the table.
//@if single && time
        var aggTableFraction = 0.60;
        var aggGroupFractions = {'Phase': 0.50, 'Count': 0.20, 'Time': 0.30};
//@elif single && basicmemory
        var aggTableFraction = 0.75;
        var aggGroupFractions = {'Phase': 0.50, 'Count': 0.05, 'Memory': 0.45};
//@elif single && detailedmemory
        var aggTableFraction = 0.60;
        var aggGroupFractions = {'Phase': 0.55, 'Count': 0.05, 'Memory': 0.50};
//@elif comparison && time
        var aggTableFraction = 0.85;
        var aggGroupFractions = {'Phase': 0.30, 'Count': 0.25, 'Time': 0.45};
//@elif comparison && basicmemory
        var aggTableFraction = 0.95;
        var aggGroupFractions = {'Phase': 0.30, 'Count': 0.15, 'Memory': 0.55};
//@elif comparison && detailedmemory
        var aggTableFraction = 0.95;
        var aggGroupFractions = {'Phase': 0.20, 'Count': 0.10, 'Memory': 0.70};
//@else
        var aggTableFraction = 0.60;
        var aggGroupFractions = {'Phase': 0.50, 'Count': 0.20};
//@endif

//@if comparison && basicmemory
        var aggFigures = ['UsageDelta', 'UsagePeakDelta'];
//@elif comparison && detailedmemory
        var aggFigures = ['Committed', 'Reserved', 'Dlls', 'NonProcess', 'Free'];
//@endif

        function renderAggregateTable() {
            numPhasesToRenderInTable['Aggregate'] = ABSMAXNUMPHASES;
            generateAggregateSummaryTable(0, Math.min(32, aggDataView.Index.length), false);
            tableResizeAction('Aggregate');
        }

        // The view: every record that is no parent, and the parents that have time of their
        // own. Parent records of the memory pages have no such field and stay out.
        function createAggDataView(filterParams) {
            aggDataView.Index = new Array();
            for (var count = 0; count < aggData.length; count++) {
                if (!aggData[count].IsParent) {
                    aggDataView.Index.push(count);
                }
//@if single
                else if (aggData[count].WCElapsed > 0) {
                    aggDataView.Index.push(count);
                }
//@else
                else if (aggData[count].LHS_WCSelf > 0 || aggData[count].RHS_WCSelf > 0) {
                    aggDataView.Index.push(count);
                }
//@endif
            }
            generateFakeDivContents('Aggregate');
        }

        // A header label that sorts the table by a field.
        function aggSortLabel(label, field) {
            return '<span style="cursor:pointer" onclick="sortAggData(\'' + field + '\')">' +
                label + '</span>';
        }

        function aggHeaderCell(content, width, rowspan, colspan) {
            return '<th rowspan="' + rowspan + '" colspan="' + colspan + '"' +
                (width ? ' style="width:' + width + 'px"' : '') + '>' + content + '</th>';
        }

        // The header rows of the table.
        function aggregateTableHeader(tableWidth, cellWidths) {
            var header = '<table class="dataTable" id="aggregateSummaryTable" cellspacing="0" ' +
                'cellpadding="0" style="table-layout:fixed; width:' + tableWidth + 'px">';
//@if single && time
            header += '<tr id="aggregateSummaryTableFirstRow" style="height:30px">' +
                aggHeaderCell(aggSortLabel('Phase', 'Phase'), cellWidths['Phase'], 1, 1) +
                aggHeaderCell(aggSortLabel('Count', 'Count'), cellWidths['Count'], 1, 1) +
                aggHeaderCell(aggSortLabel('Wallclock Time (Secs)', 'WCElapsed'), cellWidths['Time'], 1, 1) +
                '</tr><tr id="aggregateSummaryTableLastHeaderRow"></tr>';
//@elif single && basicmemory
            header += '<tr id="aggregateSummaryTableFirstRow">' +
                aggHeaderCell(aggSortLabel('Phase', 'Phase'), cellWidths['Phase'], 2, 1) +
                aggHeaderCell(aggSortLabel('Count', 'Count'), cellWidths['Count'], 2, 1) +
                aggHeaderCell('Memory (MB)', 0, 1, 2) +
                '</tr><tr id="aggregateSummaryTableLastHeaderRow">' +
                aggHeaderCell(aggSortLabel('Process Usage Delta', 'UsageDelta'), 0.5 * cellWidths['Memory'], 1, 1) +
                aggHeaderCell(aggSortLabel('Peak Usage Delta', 'UsagePeakDelta'), 0.5 * cellWidths['Memory'], 1, 1) +
                '</tr>';
//@elif single && detailedmemory
            header += '<tr id="aggregateSummaryTableFirstRow">' +
                aggHeaderCell(aggSortLabel('Phase', 'Phase'), cellWidths['Phase'], 2, 1) +
                aggHeaderCell(aggSortLabel('Count', 'Count'), cellWidths['Count'], 2, 1) +
                aggHeaderCell('Memory (MB)', 0, 1, 5) +
                '</tr><tr id="aggregateSummaryTableLastHeaderRow">';
            var labels = [['Com', 'Committed'], ['Res', 'Reserved'], ['Dll', 'Dlls'],
                          ['OS', 'NonProcess'], ['Free', 'Free']];
            for (var l = 0; l < labels.length; l++) {
                header += aggHeaderCell(aggSortLabel(labels[l][0], labels[l][1]), 0.2 * cellWidths['Memory'], 1, 1);
            }
            header += '</tr>';
//@elif comparison && time
            header += '<tr id="aggregateSummaryTableFirstRow">' +
                aggHeaderCell(aggSortLabel('Phase', 'Phase'), cellWidths['Phase'], 2, 1) +
                aggHeaderCell(aggSortLabel('Count', 'Count'), 0, 1, 3) +
                aggHeaderCell('Wallclock Time (Secs)', 0, 1, 4) +
                '</tr><tr id="aggregateSummaryTableLastHeaderRow">' + aggCountHeaderCells(cellWidths) +
                aggHeaderCell(aggSortLabel(lhsLabel, 'LHS_WCSelf'), 0.25 * cellWidths['Time'], 1, 1) +
                aggHeaderCell(aggSortLabel(rhsLabel, 'RHS_WCSelf'), 0.25 * cellWidths['Time'], 1, 1) +
                aggHeaderCell(aggSortLabel('Abs Dev', 'WCSelfAbsDev'), 0.25 * cellWidths['Time'], 1, 1) +
                aggHeaderCell(aggSortLabel('Rel Dev', 'WCSelfRelDev'), 0.25 * cellWidths['Time'], 1, 1) +
                '</tr>';
//@elif comparison && (basicmemory || detailedmemory)
//@if basicmemory
            var headings = ['Process Usage Delta', 'Peak Usage Delta'];
            var headingWidth = 0.25;
//@else
            var headings = ['Com', 'Res', 'Dll', 'OS', 'Free'];
            var headingWidth = 0.2;
//@endif
            header += '<tr id="aggregateSummaryTableFirstRow">' +
                aggHeaderCell(aggSortLabel('Phase', 'Phase'), cellWidths['Phase'], 3, 1) +
                aggHeaderCell(aggSortLabel('Count', 'Count'), 0, 2, 3) +
                aggHeaderCell('Memory (MB)', 0, 1, 4 * aggFigures.length) +
                '</tr><tr id="aggregateSummaryTableSecondRow">';
            for (var h = 0; h < headings.length; h++) {
                header += aggHeaderCell(headings[h], headingWidth * cellWidths['Memory'], 1, 4);
            }
            header += '</tr><tr id="aggregateSummaryTableLastHeaderRow">' + aggCountHeaderCells(cellWidths);
            for (var f = 0; f < aggFigures.length; f++) {
                var x = aggFigures[f];
                header += aggHeaderCell(aggSortLabel(lhsLabel, 'LHS_' + x), 0.125 * cellWidths['Memory'], 1, 1) +
                    aggHeaderCell(aggSortLabel(rhsLabel, 'RHS_' + x), 0.125 * cellWidths['Memory'], 1, 1) +
                    aggHeaderCell(aggSortLabel('Abs Dev', x + 'AbsDev'), 0.125 * cellWidths['Memory'], 1, 1) +
                    aggHeaderCell(aggSortLabel('Rel Dev', x + 'RelDev'), 0.125 * cellWidths['Memory'], 1, 1);
            }
            header += '</tr>';
//@else
            header += '<tr id="aggregateSummaryTableFirstRow">' +
                aggHeaderCell(aggSortLabel('Phase', 'Phase'), cellWidths['Phase'], 1, 1) +
                aggHeaderCell(aggSortLabel('Count', 'Count'), cellWidths['Count'], 1, 1) +
                '</tr><tr id="aggregateSummaryTableLastHeaderRow"></tr>';
//@endif
            return header;
        }

//@if comparison
        // The three count columns of a comparison's last header row.
        function aggCountHeaderCells(cellWidths) {
            return aggHeaderCell(aggSortLabel(lhsLabel, 'LHS_Count'), 0.33 * cellWidths['Count'], 1, 1) +
                aggHeaderCell(aggSortLabel(rhsLabel, 'RHS_Count'), 0.33 * cellWidths['Count'], 1, 1) +
                aggHeaderCell(aggSortLabel('Abs Dev', 'CountAbsDev'), 0.33 * cellWidths['Count'], 1, 1);
        }

        // A value of one side, or "NA" where that side has no such phase.
        function aggSideText(value) {
            return value == -99.99 ? 'NA' : createScientificNotation(value);
        }
//@endif

        function generateAggregateSummaryTable(begin, end, onScrollCall) {
            var tableDiv = document.getElementById('aggregateSummaryDiv');
            var tableWidth = aggTableFraction * tableDiv.clientWidth;
            var cellWidths = {};
            for (var group in aggGroupFractions) {
                cellWidths[group] = aggGroupFractions[group] * tableWidth;
            }
            if (onScrollCall) {
                reCreateAggSummaryTableRows(begin, end, cellWidths);
                return;
            }
            if (TableHdrStr['Aggregate'] == '') {
                TableHdrStr['Aggregate'] = aggregateTableHeader(tableWidth, cellWidths);
            }
            TableFtrStr['Aggregate'] = '</table>';
            tableDiv.innerHTML = TableHdrStr['Aggregate'] +
                createAggregateSummaryTable(begin, end, cellWidths) + TableFtrStr['Aggregate'];
        }

        // The content of a row's phase cell: the name fitted to the cell, a link where the
        // page has a next level of detail.
        function aggPhaseContent(record, cellWidths) {
            var name = Phase[record.Phase];
            var shown = escapeMarkup(createStrToShow(
                modifyStrToShow('Phase', name, cellWidths['Phase']), name));
//@if aggregatePage
            return shown;
//@elif comparison || !callTreeTab
            return '<a href="javascript:void(0)" onclick="openDetailTab(Phase[' + record.Phase +
                ']); return false;">' + shown + '</a>';
//@else
            return '<a href="javascript:void(0)" onclick="openCallTreeTab(Phase[' + record.Phase +
                ']); return false;">' + shown + '</a>';
//@endif
        }

        function aggPhaseCell(n, record, rowClass, cellWidths) {
//@if aggregatePage
            var cursor = '';
//@else
            var cursor = '; cursor:pointer';
//@endif
            return '<td id="aggRow' + n + 'col0" class="phaseNameCell phaseSummaryCell ' +
                rowClass + '" style="height:25px; width:' + cellWidths['Phase'] + 'px' + cursor +
                '">' + aggPhaseContent(record, cellWidths) + '</td>';
        }

        function aggCell(id, classes, width, text) {
            return '<td id="' + id + '" class="' + classes + '" style="width:' + width + 'px">' +
                text + '</td>';
        }

        function createAggregateSummaryTable(begin, end, cellWidths) {
            numRows['Aggregate'] = 0;
            var html = new Array();
            for (var i = begin, n = 0; i < end; i++, n++) {
                var record = aggData[aggDataView.Index[i]];
                var rowClass = n % 2 == 0 ? 'dataCellOdd' : 'dataCellEven';
                var row = 'aggRow' + n + 'col';
                var countClass = 'dataCell phaseSummaryCell ' + rowClass;
                var dataClass = 'dataCell ' + rowClass;
                html.push('<tr>' + aggPhaseCell(n, record, rowClass, cellWidths));
//@if single
                html.push(aggCell(row + 1, countClass, cellWidths['Count'], Math.abs(record.Count)));
//@else
                var countWidth = 0.3 * cellWidths['Count'];
                html.push(aggCell(row + 1, countClass, countWidth,
                                  record.LHS_Count == -99.99 ? 'NA' : Math.abs(record.LHS_Count)));
                html.push(aggCell(row + 2, countClass, countWidth,
                                  record.RHS_Count == -99.99 ? 'NA' : Math.abs(record.RHS_Count)));
                html.push(aggCell(row + 3, countClass, countWidth, Math.abs(record.CountAbsDev)));
//@endif
//@if single && time
                html.push(aggCell(row + 2, dataClass, 0.5 * cellWidths['Time'],
                                  createScientificNotation(record.WCElapsed)));
//@elif single && basicmemory
                html.push(aggCell(row + 2, dataClass, 0.5 * cellWidths['Memory'],
                                  createScientificNotation(record.UsageDelta)));
                html.push(aggCell(row + 4, dataClass, 0.5 * cellWidths['Memory'],
                                  createScientificNotation(record.UsagePeakDelta)));
//@elif single && detailedmemory
                var figures = ['Committed', 'Reserved', 'Dlls', 'NonProcess', 'Free'];
                for (var f = 0; f < figures.length; f++) {
                    html.push(aggCell(row + (2 + f), dataClass, 0.2 * cellWidths['Memory'],
                                      createScientificNotation(record[figures[f]])));
                }
//@elif comparison && time
                // The deviation cells test a field no record has, and so always show numbers.
                var width = 0.25 * cellWidths['Time'];
                html.push(aggCell(row + 4, dataClass, width, aggSideText(record.LHS_WCSelf)));
                html.push(aggCell(row + 5, dataClass, width, aggSideText(record.RHS_WCSelf)));
                html.push(aggCell(row + 6, dataClass, width, record.WCETAbsDev == -99.99 ? 'NA' :
                                  createScientificNotation(record.WCSelfAbsDev)));
                html.push(aggCell(row + 7, dataClass + ' lastColumnCell' + record.WCSelfBkgColor, width,
                                  record.WCETAbsDev == -99.99 ? 'NA' :
                                  createScientificNotation(record.WCSelfRelDev)));
//@elif comparison && (basicmemory || detailedmemory)
                var width = 0.125 * cellWidths['Memory'];
                for (var g = 0; g < aggFigures.length; g++) {
                    var x = aggFigures[g];
//@if basicmemory
                    var first = 4 + 8 * g;  // UsageDelta in 4 to 7, UsagePeakDelta in 12 to 15
//@else
                    var first = 4 + 4 * g;
//@endif
                    // On the build, the absolute cells of NonProcess and Free test fields no
                    // record has; their relative cells test the group's own.
                    var absTest = x == 'NonProcess' || x == 'Free' ? 'Usage' + x + 'AbsDev' : x + 'AbsDev';
                    html.push(aggCell(row + first, dataClass, width, aggSideText(record['LHS_' + x])));
                    html.push(aggCell(row + (first + 1), dataClass, width, aggSideText(record['RHS_' + x])));
                    html.push(aggCell(row + (first + 2), dataClass, width, record[absTest] == -99.99 ? 'NA' :
                                      createScientificNotation(record[x + 'AbsDev'])));
                    html.push(aggCell(row + (first + 3), dataClass + record[x + 'BkgColor'], width,
                                      record[x + 'AbsDev'] == -99.99 ? 'NA' :
                                      createScientificNotation(record[x + 'RelDev'])));
                }
//@endif
                html.push('</tr>');
                numRows['Aggregate']++;
            }
            return html.join('');
        }

        // A scroll re-fills the cells of the rows that exist; no row is made.
        function reCreateAggSummaryTableRows(begin, end, cellWidths) {
            for (var i = begin, n = 0; i < end; i++, n++) {
                var record = aggData[aggDataView.Index[i]];
                var row = 'aggRow' + n + 'col';
                setCell(row + 0, aggPhaseContent(record, cellWidths));
//@if single
                setCell(row + 1, Math.abs(record.Count));
//@else
                setCell(row + 1, record.LHS_Count == -99.99 ? 'NA' : Math.abs(record.LHS_Count));
                setCell(row + 2, record.RHS_Count == -99.99 ? 'NA' : Math.abs(record.RHS_Count));
                setCell(row + 3, Math.abs(record.CountAbsDev));
//@endif
//@if single && time
                setCell(row + 2, createScientificNotation(record.WCElapsed));
//@elif single && basicmemory
                setCell(row + 2, createScientificNotation(record.UsageDelta));
                setCell(row + 4, createScientificNotation(record.UsagePeakDelta));
//@elif single && detailedmemory
                var figures = ['Committed', 'Reserved', 'Dlls', 'NonProcess', 'Free'];
                for (var f = 0; f < figures.length; f++) {
                    setCell(row + (2 + f), createScientificNotation(record[figures[f]]));
                }
//@elif comparison && time
                setCell(row + 4, aggSideText(record.LHS_WCSelf));
                setCell(row + 5, aggSideText(record.RHS_WCSelf));
                setCell(row + 6, record.WCETAbsDev == -99.99 ? 'NA' :
                        createScientificNotation(record.WCSelfAbsDev));
                var rel = setCell(row + 7, record.WCETAbsDev == -99.99 ? 'NA' :
                                  createScientificNotation(record.WCSelfRelDev));
                if (rel && record.WCETAbsDev != -99.99) {
                    rel.className = 'dataCell lastColumnCell ' + record.WCSelfBkgColor;
                }
//@elif comparison && (basicmemory || detailedmemory)
                for (var g = 0; g < aggFigures.length; g++) {
                    var x = aggFigures[g];
//@if basicmemory
                    var first = 4 + 8 * g;
//@else
                    var first = 4 + 4 * g;
//@endif
                    var missing = record[x + 'AbsDev'] == -99.99;
                    setCell(row + first, aggSideText(record['LHS_' + x]));
                    setCell(row + (first + 1), aggSideText(record['RHS_' + x]));
                    setCell(row + (first + 2), missing ? 'NA' : createScientificNotation(record[x + 'AbsDev']));
                    var relCell = setCell(row + (first + 3), missing ? 'NA' :
                                          createScientificNotation(record[x + 'RelDev']));
                    if (relCell && !missing) {
                        relCell.className = 'dataCell ' + record[x + 'BkgColor'];
                    }
                }
//@endif
            }
        }

        // Sorts the view by a column: the first click ascending, the next descending.
        function sortAggData(col) {
            if (col != aggSortInfo['Col']) {
                aggSortInfo['Asc'] = false;
            }
            aggSortInfo['Col'] = col;
            aggDataView.Index.sort(aggDataSortFunction);
            aggSortInfo['Asc'] = !aggSortInfo['Asc'];
            generateAggregateSummaryTable(0, Math.min(numPhasesToRenderInTable['Aggregate'],
                                                      aggDataView.Index.length), true);
            tableResizeAction('Aggregate');
        }

        function aggDataSortFunction(a, b) {
            var col = aggSortInfo['Col'];
            var result;
            if (col == 'Phase') {
                var left = Phase[aggData[a].Phase].toLowerCase();
                var right = Phase[aggData[b].Phase].toLowerCase();
                result = left < right ? -1 : (left > right ? 1 : 0);
            } else {
                result = aggData[a][col] - aggData[b][col];
            }
            return aggSortInfo['Asc'] ? -result : result;
        }

//@if comparison || (detailsTab && !callTreeTab)
        // From a phase name to the Details tab, with the rows of that phase.
        function openDetailTab(phaseName) {
            resizeTabContent['Detail'] = false;
            if (aggSortInfo['Col'] != '') {
                var sortId = ('Sort_' + aggSortInfo['Col']).replace('PlusChild', '').replace('SC', 'Self');
                var sortInput = document.getElementById(sortId);
                if (sortInput) {
                    sortInput.value = 1;
                }
            }
            document.getElementById('phasename').value = phaseName;
            detailDataViewCreated = true;
            ShowTable('phaseSummary');
            document.getElementById('phaseSummaryTableDiv').style.display = 'block';
            modifyDataView(false);
            dataView.AllChecked = true;
            for (var i = 0; i < dataView.Checked.length; i++) {
                dataView.Checked[i] = true;
            }
            var boxes = document.getElementsByTagName('input');
            for (var b = 0; b < boxes.length; b++) {
                if (boxes[b].type == 'checkbox') {
                    boxes[b].checked = true;
                }
            }
            renderDetailTable();
            updateTotals();
        }
//@endif
//@if callTreeTab

        // From a call tree node to the Details tab, listing every execution folded into it.
        function openDetailTab(nodeIndex) {
            resizeTabContent['Detail'] = false;
            detailDataViewCreated = true;
            ShowTable('phaseSummary');
            var tableDiv = document.getElementById('phaseSummaryTableDiv');
            tableDiv.style.display = 'block';
            tableDiv.innerHTML = 'Loading Please wait ...';
            var ids = nodeArray[nodeIndex].IDs;
            dataView.Index = ids.slice(0);
            dataView.Checked = new Array();
            for (var i = 0; i < ids.length; i++) {
                dataView.Checked.push(true);
            }
            dataView.AllChecked = true;
            lastStartIndex['Detail'] = 0;
            generateFakeDivContents('Detail');
            renderDetailTable();
            var all = document.getElementById('AllChecked');
            if (all) {
                all.checked = true;
            }
            updateTotals();
        }
//@endif
