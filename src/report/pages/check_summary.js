// The summary page of a check of many runs against many: the headline, how the runs were
// compared, and the table of verdicts, worst first, each row with the runs of both sides drawn
// as dots over their box (quartiles), the line in the box at the median. Everything is built
// from checkData, the check's result as JSON; text from the data enters the page as text only.

        var SVG_NS = 'http://www.w3.org/2000/svg';
        var PLOT_WIDTH = 320;
        var PLOT_HEIGHT = 46;
        var PLOT_MARGIN = 10;

        // A time in seconds with a unit that keeps it between 1 and 1000, four digits.
        function checkTimeText(seconds) {
            if (seconds === null || seconds === undefined || isNaN(seconds)) {
                return '-';
            }
            var units = [[1, 's'], [1e-3, 'ms'], [1e-6, '\u00b5s'], [1e-9, 'ns']];
            for (var i = 0; i < units.length; i++) {
                if (Math.abs(seconds) >= units[i][0] || i == units.length - 1) {
                    return (seconds / units[i][0]).toPrecision(4) + ' ' + units[i][1];
                }
            }
            return String(seconds);
        }

        // The change a ratio means, in percent with its sign.
        function checkChangeText(ratio) {
            var percent = (ratio - 1) * 100;
            if (Math.abs(percent) < 0.05) {
                return '0.0%';
            }
            return (percent > 0 ? '+' : '\u2212') + Math.abs(percent).toFixed(1) + '%';
        }

        function checkPText(p) {
            if (p === null || p === undefined) {
                return '-';
            }
            return p < 1e-4 ? p.toExponential(1) : String(Number(p.toPrecision(2)));
        }

        // Median and half the interquartile range relative to it: where the middle half of the
        // runs lies.
        function checkSideText(side) {
            if (!side) {
                return '-';
            }
            var text = checkTimeText(side.median);
            if (side.median > 0) {
                text += ' \u00b1' + ((side.q3 - side.q1) / 2 / side.median * 100).toFixed(1) + '%';
            }
            return text;
        }

        function checkCell(row, text, className) {
            var cell = document.createElement('td');
            cell.className = 'dataCell' + (className ? ' ' + className : '');
            cell.appendChild(document.createTextNode(text));
            row.appendChild(cell);
            return cell;
        }

        function checkSvg(tag, attributes, parent) {
            var element = document.createElementNS(SVG_NS, tag);
            for (var name in attributes) {
                element.setAttribute(name, attributes[name]);
            }
            parent.appendChild(element);
            return element;
        }

        // One side's runs on a line of the plot: whiskers from the fastest to the slowest run,
        // the box of the middle half, the median, and a dot per run.
        function checkPlotSide(svg, side, name, middle, x) {
            var group = checkSvg('g', { 'class': name + 'Side' }, svg);
            var title = document.createElementNS(SVG_NS, 'title');
            title.appendChild(document.createTextNode(name + ': ' + side.times.length +
                ' runs, median ' + checkTimeText(side.median) + ', ' + checkTimeText(side.min) +
                ' to ' + checkTimeText(side.max)));
            group.appendChild(title);
            checkSvg('line', { 'class': 'whisker', x1: x(side.min), x2: x(side.max),
                               y1: middle, y2: middle }, group);
            checkSvg('rect', { 'class': name + 'Box', x: x(side.q1), y: middle - 6,
                               width: Math.max(1, x(side.q3) - x(side.q1)), height: 12 }, group);
            checkSvg('line', { 'class': name + 'Median', x1: x(side.median), x2: x(side.median),
                               y1: middle - 7, y2: middle + 7 }, group);
            for (var i = 0; i < side.times.length; i++) {
                // Runs of equal times stand apart a little, up and down.
                checkSvg('circle', { 'class': name + 'Run', cx: x(side.times[i]),
                                     cy: middle + ((i % 3) - 1) * 3, r: 2.5 }, group);
            }
        }

        function checkPlot(phase) {
            var svg = document.createElementNS(SVG_NS, 'svg');
            svg.setAttribute('class', 'checkPlot');
            svg.setAttribute('width', PLOT_WIDTH);
            svg.setAttribute('height', PLOT_HEIGHT);
            var sides = [[phase.base, 'base', 11], [phase['new'], 'new', 27]];
            var low = Infinity, high = -Infinity;
            for (var s = 0; s < sides.length; s++) {
                if (sides[s][0]) {
                    low = Math.min(low, sides[s][0].min);
                    high = Math.max(high, sides[s][0].max);
                }
            }
            if (!(high > low)) {
                var pad = Math.abs(low) * 0.01 || 1e-6;
                low -= pad;
                high += pad;
            }
            var x = function (t) {
                return PLOT_MARGIN + (t - low) / (high - low) * (PLOT_WIDTH - 2 * PLOT_MARGIN);
            };
            for (s = 0; s < sides.length; s++) {
                if (sides[s][0]) {
                    checkPlotSide(svg, sides[s][0], sides[s][1], sides[s][2], x);
                }
            }
            var ends = [[low, 'start', PLOT_MARGIN], [high, 'end', PLOT_WIDTH - PLOT_MARGIN]];
            for (var e = 0; e < ends.length; e++) {
                var label = checkSvg('text', { 'class': 'axisLabel', x: ends[e][2],
                                               y: PLOT_HEIGHT - 2, 'text-anchor': ends[e][1] }, svg);
                label.appendChild(document.createTextNode(checkTimeText(ends[e][0])));
            }
            return svg;
        }

        var CHECK_VERDICT_CLASSES = {
            'regression': 'verdictRegression', 'improvement': 'verdictImprovement',
            'within threshold': 'verdictWithin', 'no significant change': 'verdictNone',
            'base only': 'verdictMissing', 'new only': 'verdictMissing'
        };

        function checkHeaderRow(table, labels) {
            var row = document.createElement('tr');
            for (var i = 0; i < labels.length; i++) {
                var cell = document.createElement('th');
                cell.appendChild(document.createTextNode(labels[i]));
                row.appendChild(cell);
            }
            table.appendChild(row);
        }

        function checkRow(table, phase, index) {
            var row = document.createElement('tr');
            row.id = 'checkRow' + index;
            row.className = index % 2 ? 'checkRowOdd' : 'checkRowEven';
            checkCell(row, phase.phase, 'checkPhase');
            checkCell(row, phase.time, 'checkTime');
            checkCell(row, checkSideText(phase.base), 'checkBase');
            checkCell(row, checkSideText(phase['new']), 'checkNew');
            if (phase.ratio === null) {
                checkCell(row, '-', 'checkRatio');
                checkCell(row, '-', 'checkInterval');
            } else {
                checkCell(row, phase.ratio.toFixed(3) + ' (' + checkChangeText(phase.ratio) + ')',
                          'checkRatio');
                checkCell(row, phase.ratioLow === null ? 'too few runs'
                          : phase.ratioLow.toFixed(3) + ' \u2013 ' + phase.ratioHigh.toFixed(3),
                          'checkInterval');
            }
            checkCell(row, checkPText(phase.adjustedP), 'checkP');
            checkCell(row, phase.verdict, 'checkVerdict ' + (CHECK_VERDICT_CLASSES[phase.verdict] || ''));
            var plotCell = checkCell(row, '', 'checkPlotCell');
            plotCell.appendChild(checkPlot(phase));
            table.appendChild(row);
        }

        function checkPlural(count, word) {
            return count + ' ' + word + (count == 1 ? '' : 's');
        }

        function checkHeadlineText(data) {
            var threshold = Number((data.threshold * 100).toPrecision(6)) + '%';
            var counts = data.counts;
            var missing = counts['base only'] + counts['new only'];
            if (data.status == 'failed') {
                var reasons = [];
                if (counts.regression > 0) {
                    var names = [];
                    for (var i = 0; i < data.phases.length; i++) {
                        if (data.phases[i].verdict == 'regression') {
                            names.push(data.phases[i].phase);
                        }
                    }
                    reasons.push(checkPlural(counts.regression, 'regression') + ' beyond ' + threshold +
                                 ' (' + names.join(', ') + ')');
                }
                if (data.failOnMissing && missing > 0) {
                    reasons.push(checkPlural(missing, 'phase') + ' on one side only');
                }
                return 'FAILED: ' + reasons.join('; ');
            }
            if (data.status == 'inconclusive') {
                return 'INCONCLUSIVE: too few runs for any result to be significant';
            }
            return 'PASSED: no phase regressed beyond ' + threshold;
        }

        function checkText(id, text) {
            var element = document.getElementById(id);
            element.appendChild(document.createTextNode(text));
            return element;
        }

        function showCheck() {
            var data = checkData;
            var headline = checkText('checkHeadline', checkHeadlineText(data));
            headline.className = 'checkHeadline check_' + data.status;
            var confidence = Number((data.confidence * 100).toPrecision(6)) + '%';
            checkText('checkMethod',
                data.baseRuns.length + ' base runs against ' + data.newRuns.length + ' new runs, ' +
                (data.clock == 'cpu' ? 'CPU' : 'wall-clock') + ' time' +
                (data.grouping == 'GLOBAL' ? '' : ', grouping ' + data.grouping) + '. ' +
                'Each phase: two-sided Mann\u2013Whitney U test, p adjusted by Holm\u2019s method ' +
                'over ' + checkPlural(data.tests, 'comparison') + ' at alpha ' + data.alpha +
                '; ratio new/base by Hodges\u2013Lehmann with its ' + confidence + ' interval; ' +
                'base and new as median \u00b1 half the interquartile range.');
            if (!data.significancePossible) {
                checkText('checkNotice',
                    'With these runs no p-value can go below ' + checkPText(data.smallestPossibleP) +
                    ', and after the adjustment a result needs ' +
                    checkPText(data.alpha / data.tests) + ': at least ' + data.runsNeeded +
                    ' runs on each side are needed.');
            }
            var table = document.getElementById('checkTable');
            checkHeaderRow(table, ['Phase', 'Time', 'Base', 'New', 'Ratio (change)',
                                   confidence + ' interval', 'p (Holm)', 'Verdict',
                                   'Runs: base above, new below']);
            for (var i = 0; i < data.phases.length; i++) {
                checkRow(table, data.phases[i], i);
            }
            var runs = document.getElementById('checkRuns');
            var lists = [['Base runs: ', data.baseRuns], ['New runs: ', data.newRuns]];
            for (var l = 0; l < lists.length; l++) {
                var line = document.createElement('div');
                line.appendChild(document.createTextNode(lists[l][0] + lists[l][1].join(', ')));
                runs.appendChild(line);
            }
        }
