// The windowed table engine shared by the tabs. A tab's table never holds more than
// ABSMAXNUMPHASES data rows; the real scroll bar is a thin strip beside it, whose content is an
// empty table as tall as all rows would be, and scrolling the strip re-fills the cells of the
// rows that exist with another slice of the tab's data view.
//
// Table types: 'Aggregate' (aggDataView over aggData), 'Detail' (dataView over procData) and
// 'CallTree' (CTDataView over the call tree's nodes).

        var isIE = navigator.appName.indexOf('Microsoft') != -1;
//@if aggregatePage
        var TableHdrStr = {'Aggregate': ''};
        var TableFtrStr = {'Aggregate': ''};
        var resizeTabContent = {'Aggregate': false};
//@else
        var TableHdrStr = {'Aggregate': '', 'CallTree': '', 'Detail': ''};
        var TableFtrStr = {'Aggregate': '', 'CallTree': '', 'Detail': ''};
        var resizeTabContent = {'Aggregate': false, 'CallTree': false, 'Detail': false};
//@endif
        var baselinelabel = '<br>(Baseline)</br>';
        // The labels head the comparison tables as markup; their text comes from the user.
        var lhsLabel = escapeMarkup('@@lhsLabel@@') + baselinelabel.fontsize(0.8);
        var rhsLabel = escapeMarkup('@@rhsLabel@@');
        var activeTab = '';
//@if !aggregatePage
        var dataView = {'Index': new Array(), 'Checked': new Array(), 'AllChecked': false};
//@endif
        var ABSMAXNUMPHASES = 32;
        var numPhasesToRenderInTable = {'Aggregate': 32, 'CallTree': 32, 'Detail': 32};
        var lastStartIndex = {'Aggregate': 0, 'CallTree': 0, 'Detail': 0};
        var aggrRowHeight = 0;
        // The strip of a view is one element as tall as the view's rows, up to the tallest that
        // browsers lay out; a taller view has its rows scaled down to fit, by stripScale, and
        // the strip still reaches every row.
        var MAXSTRIPHEIGHT = 10000000;
        var stripScale = {'Aggregate': 1, 'CallTree': 1, 'Detail': 1};

        // The elements of each table type.
        var tableIds = {
            'Aggregate': {'table': 'aggregateSummaryTable', 'tabDiv': 'aggregateSummaryDiv',
                          'tableDiv': 'aggregateSummaryDiv',
                          'first': 'aggregateSummaryTableFirstRow',
                          'second': 'aggregateSummaryTableSecondRow',
                          'last': 'aggregateSummaryTableLastHeaderRow', 'totals': '',
                          'strip': 'aggregateSummaryScrollTableDiv'}
//@if !aggregatePage
            ,
            'Detail': {'table': 'phaseSummaryTable', 'tabDiv': 'phaseSummaryDiv',
                       'tableDiv': 'phaseSummaryTableDiv',
                       'first': 'phaseSummaryTableFirstRow',
                       'second': 'phaseSummaryTableSecondRow',
                       'last': 'phaseSummaryTableLastHeaderRow',
                       'totals': 'phaseSummaryTableAggrRow',
                       'strip': 'phaseSummaryScrollTableDiv'},
            'CallTree': {'table': 'callTreeSummaryTable', 'tabDiv': 'callTreeSummaryDiv',
                         'tableDiv': 'callTreeSummaryTableDiv',
                         'first': 'callTreeSummaryTableFirstRow',
                         'second': 'callTreeSummaryTableSecondRow',
                         'last': 'callTreeSummaryTableLastHeaderRow',
                         'totals': 'callTreeSummaryTableAggrRow',
                         'strip': 'callTreeSummaryScrollTableDiv'}
//@endif
        };

        // The data view of a table type.
        function viewOf(tableType) {
//@if !aggregatePage
            if (tableType == 'Detail') {
                return dataView;
            }
//@endif
//@if callTreeTab
            if (tableType == 'CallTree') {
                return CTDataView;
            }
//@endif
            return aggDataView;
        }

        // Builds (onScrollCall false) or re-fills (true) the window of a table type.
        function generateTable(tableType, begin, end, onScrollCall) {
//@if !aggregatePage
            if (tableType == 'Detail') {
                return generatePhaseSummaryTable(begin, end, onScrollCall);
            }
//@endif
//@if callTreeTab
            if (tableType == 'CallTree') {
                return generateCallTreeTable(begin, end, onScrollCall);
            }
//@endif
            return generateAggregateSummaryTable(begin, end, onScrollCall);
        }

        // The clientHeight of an element, 0 when there is none.
        function clientHeightOf(id) {
            var element = id ? document.getElementById(id) : null;
            return element ? element.clientHeight : 0;
        }

        // The offsetHeight of an element, 0 when there is none.
        function offsetHeightOf(id) {
            var element = id ? document.getElementById(id) : null;
            return element ? element.offsetHeight : 0;
        }

        // Sets a cell's content; the cell, or null when there is none. Content that markup
        // would read as the same text (no tag, no reference) goes in as text, which spares the
        // parse: a re-fill of the window sets hundreds of cells.
        function setCell(id, text) {
            var cell = document.getElementById(id);
            if (cell) {
                var content = String(text);
                if (/[<&\r\0]/.test(content)) {
                    cell.innerHTML = content;
                } else if (cell.textContent !== content || cell.childNodes.length > 1) {
                    cell.textContent = content;
                }
            }
            return cell;
        }

        // Text from the data as markup: names may hold any character.
        function escapeMarkup(text) {
            return String(text).replace(/&/g, '&amp;').replace(/</g, '&lt;')
                .replace(/>/g, '&gt;').replace(/"/g, '&quot;').replace(/'/g, '&#39;');
        }

//@if !aggregatePage
        // A pattern the user typed into a filter, as a test of names. A pattern that is not
        // valid, or too large to run, matches nothing.
        function userPattern(text) {
            var pattern;
            try {
                pattern = new RegExp(text);
            } catch (e) {
                return function() { return false; };
            }
            return function(name) {
                try {
                    return pattern.test(name);
                } catch (e) {
                    return false;
                }
            };
        }

//@endif
        // Text from the data as a single-quoted script string inside a markup attribute.
        function scriptArgument(text) {
            return escapeMarkup(String(text).replace(/\\/g, '\\\\').replace(/'/g, "\\'"));
        }

        function makeStruct(names) {
            var fields = names.split(' ');
            var count = fields.length;
            function constructor() {
                for (var i = 0; i < count; i++) {
                    this[fields[i]] = arguments[i];
                }
            }
            return constructor;
        }

        // The width in pixels of each string in the page's font, measured in the hidden span.
        // Name arrays hold text; ExpandStr holds markup.
        function getStringLengths(stringArray, asMarkup) {
            var lengths = new Array();
            var span = document.getElementById('FakeSpan');
            if (!span) {
                return lengths;
            }
            for (var i = 0; i < stringArray.length; i++) {
                span.innerHTML = asMarkup ? stringArray[i] : escapeMarkup(stringArray[i]);
                lengths.push(span.offsetWidth);
            }
            span.innerHTML = '';
            return lengths;
        }

        // The names and their measured widths that a fitted name is looked up in.
        function namesAndLengths(stringArray) {
            switch (stringArray) {
                case 'Phase': return [Phase, PhaseLengths];
                case 'Grouping': return [Grouping, GroupingLengths];
                case 'Model': return [Model, ModelLengths];
                case 'Target': return [Target, TargetLengths];
                case 'Machine': return [Machine, MachineLengths];
                case 'Chart': return [Chart, ChartLengths];
//@if memChartTab
                case 'Combined': return [visiblePhaseNames, visiblePhaseLengths];
//@endif
            }
            return [[], []];
        }

        // The position of the first entry of each name in a name array, made on first use: the
        // rows on show look their names up at every re-fill.
        var namePositions = {};
        function firstPositionOf(stringArray, names, name) {
            if (stringArray == 'Combined') {
                for (var i = 0; i < names.length; i++) {
                    if (names[i] == name) {
                        return i;
                    }
                }
                return -1;
            }
            var positions = namePositions[stringArray];
            if (!positions || positions.names !== names) {
                positions = {'names': names, 'of': Object.create(null)};
                for (var p = names.length - 1; p >= 0; p--) {
                    positions.of[names[p]] = p;
                }
                namePositions[stringArray] = positions;
            }
            var found = typeof name == 'string' ? positions.of[name] : undefined;
            return found === undefined ? -1 : found;
        }

        // A name cut with '...' to what fits a cell of the width; names that fit, and names
        // that are not in the array, come back as they are.
        function modifyStrToShow(stringArray, origStr, cellWidth) {
            var arrays = namesAndLengths(stringArray);
            var strLength = -1;
            var position = firstPositionOf(stringArray, arrays[0], origStr);
            if (position >= 0) {
                strLength = arrays[1][position];
            }
            var limit = cellWidth - 5;
            var allowedChars = (origStr.length / strLength) * limit;
            if (strLength > limit) {
                var shown = '';
                for (var p = 0; p < allowedChars - 3; p++) {
                    shown += origStr.charAt(p);
                }
                return shown + '...';
            }
            return origStr;
        }

        // A hook every shown name passes through; it has nothing to add.
        function createStrToShow(strToShow, str) {
            var prefix = '';
            var suffix = '';
            if (strToShow.indexOf('...') != -1) {
                return prefix + strToShow + suffix;
            }
            return strToShow;
        }

        // The height of a data row of a table type.
        function rowHeightOf(tableType) {
            if (tableType == 'Aggregate') {
                return 25;
            }
            var height = clientHeightOf(tableType == 'CallTree' ? 'ct_checkBoxTD1' : 'checkBoxTD1');
            return height == 0 ? 40 : height;
        }

        // Fills the strip with one empty element as tall as the view's rows.
        function generateFakeDivContents(tableType) {
            var strip = document.getElementById(tableIds[tableType]['strip']);
            if (!strip) {
                return;
            }
            var height = rowHeightOf(tableType) * viewOf(tableType).Index.length;
            stripScale[tableType] = height > MAXSTRIPHEIGHT ? MAXSTRIPHEIGHT / height : 1;
            strip.innerHTML = '<div style="width:1px; height:' + Math.min(height, MAXSTRIPHEIGHT) +
                'px"></div>';
        }

        // How many rows fit the window.
        function computeNumPhasesToRender(tableType) {
            var ids = tableIds[tableType];
            var rowHeight = rowHeightOf(tableType);
            var userInputHeight = 0;
            if (tableType == 'Detail') {
                userInputHeight = clientHeightOf('UserInputsTableId');
            } else if (tableType == 'CallTree') {
                userInputHeight = clientHeightOf('CT_UserInputsTableId');
            }
            var windowHeight = window.innerHeight;
            if (windowHeight == undefined) {
                windowHeight = document.documentElement.offsetHeight;
            }
            var tableHeight = windowHeight - clientHeightOf('headerTable') -
                clientHeightOf(ids['first']) - clientHeightOf(ids['second']) -
                clientHeightOf(ids['last']) - aggrRowHeight - userInputHeight - 20;
            if (tableHeight > 0 && rowHeight > 0) {
                numPhasesToRenderInTable[tableType] =
                    Math.min(ABSMAXNUMPHASES, Math.floor(tableHeight / rowHeight) - 1);
            }
        }

        // Lays a table out anew for the window's size.
        function tableResizeAction(tableType) {
            var ids = tableIds[tableType];
            var viewLength = viewOf(tableType).Index.length;
            if (tableType == 'Aggregate') {
                aggrRowHeight = 0;
            } else if (clientHeightOf(ids['totals']) != 0) {
                aggrRowHeight = clientHeightOf(ids['totals']);
            }
            var table = document.getElementById(ids['table']);
            var tabDiv = document.getElementById(ids['tabDiv']);
            if (!table || !tabDiv || tabDiv.style.display == 'none') {
                return;
            }
            computeNumPhasesToRender(tableType);
            var maxNumPhases = Math.max(0, Math.min(numPhasesToRenderInTable[tableType], viewLength));
            var end = Math.floor(lastStartIndex[tableType] + maxNumPhases);
            if (end > viewLength) {
                end = viewLength;
                lastStartIndex[tableType] = end - maxNumPhases;
            }
            generateTable(tableType, lastStartIndex[tableType], end, false);
            var strip = document.getElementById(ids['strip']);
            if (!strip) {
                return;
            }
            var stripHeight = clientHeightOf(ids['tableDiv']) - clientHeightOf(ids['first']) -
                clientHeightOf(ids['second']) - clientHeightOf(ids['last']) - aggrRowHeight;
            strip.style.height = Math.max(0, stripHeight) + 'px';
            strip.style.display = 'block';
            positionScrollbar(tableType);
        }

        // Places the strip beside its table.
        function positionScrollbar(tableType) {
            var ids = tableIds[tableType];
            var strip = document.getElementById(ids['strip']);
            var table = document.getElementById(ids['table']);
            if (!strip || !table || strip.style.display == 'none') {
                return;
            }
            var widthOffset = 3;
            var topOffset = 12;
            var topOffsetDiff = 15;
            var left = table.offsetLeft + table.clientLeft;
            var width = table.offsetWidth || table.clientWidth;
            var body = table.firstChild;
            var row = body && body.childNodes ? body.childNodes[isIE ? 2 : 1] : null;
            var top = row ? (row.offsetTop || row.clientTop) : 0;
            var height = row ? row.offsetHeight + row.clientHeight : 0;
            var i1 = offsetHeightOf(ids['first']);
            var i2 = offsetHeightOf(ids['last']);
            var second = offsetHeightOf(ids['second']);
            var base = table.offsetHeight - i1 - i2;
            var stripTop;
            var stripHeight = base;
            if (tableType == 'Aggregate') {
//@if single && time
                stripTop = top + height + i1 - i2;
//@elif single || time
                stripTop = top + height + i1 - i2 + topOffset;
//@else
                stripTop = top + height + i1 + i2 - topOffsetDiff;
                stripHeight = base - second;
//@endif
            } else {
//@if single && basicmemory
                stripTop = top + height + i1 - i2 + topOffset;
//@elif single || time
                stripTop = top + height + topOffset;
//@else
                stripTop = top + height + topOffset + i2;
                stripHeight = base - i1;
//@endif
            }
            strip.style.left = (left + width - widthOffset) + 'px';
            strip.style.top = stripTop + 'px';
            strip.style.height = Math.max(0, stripHeight) + 'px';
            strip.style.position = 'absolute';
        }

        // The strips' onscroll handler: the window follows the strip.
        function reGenerateTable(divElem, tableType) {
            var rows = numPhasesToRenderInTable[tableType];
            var viewLength = viewOf(tableType).Index.length;
            var range = viewLength - rows;
            var fraction = divElem.scrollTop / (divElem.scrollHeight - divElem.clientHeight);
            if (!isFinite(fraction)) {
                return;  // nothing to scroll
            }
            var begin = Math.floor(range * fraction);
            var end = Math.floor(begin + rows);
            if (end > viewLength) {
                end = viewLength;
                begin = end - rows;
            }
            begin = Math.max(0, begin);
            lastStartIndex[tableType] = begin;
            generateTable(tableType, begin, end, true);
//@if !aggregatePage
            if (tableType == 'Detail') {
                updateTotals();
            }
//@endif
//@if callTreeTab
            if (tableType == 'CallTree') {
                updateCTTotals();
            }
//@endif
        }

        // The body's resize handler, also run once after the page has loaded.
        function onResizeAction() {
            for (var tableType in TableHdrStr) {
                TableHdrStr[tableType] = '';
                TableFtrStr[tableType] = '';
                resizeTabContent[tableType] = false;
            }
            if (activeTab == 'aggregateSummary') {
                tableResizeAction('Aggregate');
                resizeTabContent['Detail'] = true;
                resizeTabContent['CallTree'] = true;
            }
//@if callTreeTab
            else if (activeTab == 'callTreeSummary') {
                tableResizeAction('CallTree');
                updateCTTotals();
                resizeTabContent['Aggregate'] = true;
                resizeTabContent['Detail'] = true;
            }
//@endif
//@if !aggregatePage
            else if (activeTab == 'phaseSummary') {
                tableResizeAction('Detail');
                updateTotals();
                resizeTabContent['Aggregate'] = true;
                resizeTabContent['CallTree'] = true;
            }
//@endif
//@if memChartTab
            canvasResizeAction();
//@endif
        }

        // The one number format of all tables and totals: two decimals, and from 10000 up a
        // mantissa of two decimals with e3, e6, e9 or e12.
        function createScientificNotation(val) {
            var isNegative = val < 0;
            if (isNegative) {
                val = Math.abs(val);
            }
            var numStr = typeof val == 'number' ? val.toFixed(2) : val;
            if (val >= 10000) {
                if (val < 1e6) {
                    val = Math.round(val / 10) / 100;
                    numStr = val + 'e3';
                } else if (val < 1e9) {
                    val = Math.round(val / 10000) / 100;
                    numStr = val + 'e6';
                } else if (val < 1e12) {
                    val = Math.round(val / 10000000) / 100;
                    numStr = val + 'e9';
                } else if (val < 1e15) {
                    val = Math.round(val / 10000000000) / 100;
                    numStr = val + 'e12';
                }
            }
            if (isNegative && numStr != '0.00') {
                numStr = '-' + numStr;
            }
            return numStr;
        }
