// Tab switching: one bar per tab, and ShowTable, which hides every tab and shows one. Each
// tab's data view is built the first time the tab is shown.

        var screenH = 480;
        if (parseInt(navigator.appVersion) > 3) {
            screenH = screen.height;
        } else if (navigator.appName == 'Netscape' && parseInt(navigator.appVersion) == 3 &&
                   navigator.javaEnabled()) {
            var toolkit = java.awt.Toolkit.getDefaultToolkit();
            screenH = toolkit.getScreenSize().height;
        }

        // The elements of a class, optionally of one tag and below one element. The function
        // replaces itself on its first call by the best form the browser allows.
        var getElementsByClassName = function (className, tag, elm) {
            if (document.getElementsByClassName) {
                getElementsByClassName = function (className, tag, elm) {
                    elm = elm || document;
                    var elements = elm.getElementsByClassName(className);
                    var nodeName = tag ? new RegExp('\\b' + tag + '\\b', 'i') : null;
                    var returnElements = [];
                    for (var i = 0; i < elements.length; i++) {
                        if (!nodeName || nodeName.test(elements[i].nodeName)) {
                            returnElements.push(elements[i]);
                        }
                    }
                    return returnElements;
                };
            } else if (document.evaluate) {
                getElementsByClassName = function (className, tag, elm) {
                    tag = tag || '*';
                    elm = elm || document;
                    var classes = className.split(' ');
                    var classesToCheck = '';
                    for (var j = 0; j < classes.length; j++) {
                        classesToCheck += "[contains(concat(' ', @class, ' '), ' " + classes[j] + " ')]";
                    }
                    var elements = document.evaluate('.//' + tag + classesToCheck, elm, null, 0, null);
                    var returnElements = [];
                    var node;
                    while ((node = elements.iterateNext())) {
                        returnElements.push(node);
                    }
                    return returnElements;
                };
            } else {
                getElementsByClassName = function (className, tag, elm) {
                    tag = tag || '*';
                    elm = elm || document;
                    var classes = className.split(' ');
                    var classesToCheck = [];
                    for (var k = 0; k < classes.length; k++) {
                        classesToCheck.push(new RegExp('(^|\\s)' + classes[k] + '(\\s|$)'));
                    }
                    var elements = (tag == '*' && elm.all) ? elm.all : elm.getElementsByTagName(tag);
                    var returnElements = [];
                    for (var l = 0; l < elements.length; l++) {
                        var match = true;
                        for (var m = 0; m < classesToCheck.length; m++) {
                            match = match && classesToCheck[m].test(elements[l].className);
                        }
                        if (match) {
                            returnElements.push(elements[l]);
                        }
                    }
                    return returnElements;
                };
            }
            return getElementsByClassName(className, tag, elm);
        };

        function SetHeaderVisibility(headerClassName, visibilityStr) {
            var headers = getElementsByClassName(headerClassName);
            if (headers && headers[0]) {
                headers[0].style.display = visibilityStr;
            }
        }

        function setDisplay(id, value) {
            var element = document.getElementById(id);
            if (element) {
                element.style.display = value;
            }
        }

        function ShowTable(tableType) {
            setDisplay('aggregateSummaryDiv', 'none');
            setDisplay('aggregateSummaryScrollTableDiv', 'none');
            setDisplay('systemInfoTableDiv', 'none');
//@if callTreeTab
            setDisplay('callTreeSummaryDiv', 'none');
            setDisplay('CT_userInputs', 'none');
            setDisplay('callTreeSummaryScrollTableDiv', 'none');
//@endif
//@if detailsTab
            setDisplay('phaseSummaryDiv', 'none');
            setDisplay('userInputs', 'none');
            setDisplay('phaseSummaryScrollTableDiv', 'none');
//@endif
//@if memChartTab
            hideMemChart();
//@endif

            SetHeaderVisibility('aggregateSumHeader', 'none');
            SetHeaderVisibility('sysInfoHeader', 'none');
//@if callTreeTab
            SetHeaderVisibility('callTreeHeader', 'none');
//@endif
//@if detailsTab
            SetHeaderVisibility('phaseSumHeader', 'none');
//@endif
//@if memChartTab
            SetHeaderVisibility('memoryCanvasHeader', 'none');
//@endif
            activeTab = tableType;

            if (tableType == 'aggregateSummary') {
                setDisplay('aggregateSummaryDiv', 'block');
                setDisplay('aggregateSummaryScrollTableDiv', 'block');
                if (!aggDataViewCreated) {
                    PhaseLengths = getStringLengths(Phase);
                    GroupingLengths = getStringLengths(Grouping);
                    ModelLengths = getStringLengths(Model);
                    TargetLengths = getStringLengths(Target);
                    MachineLengths = getStringLengths(Machine);
                    ChartLengths = getStringLengths(Chart);
                    ExpandStrLengths = getStringLengths(ExpandStr, true);
                    createAggDataView();
                    aggDataViewCreated = true;
                    renderAggregateTable();
//@if memChartTab
                    renderMemChart();
//@endif
                }
                if (resizeTabContent['Aggregate']) {
                    renderAggregateTable();
                    resizeTabContent['Aggregate'] = false;
                }
                SetHeaderVisibility('aggregateSumHeader', 'block');
            } else if (tableType == 'systemInfo') {
                setDisplay('systemInfoTableDiv', 'block');
                SetHeaderVisibility('sysInfoHeader', 'block');
            }
//@if detailsTab
            else if (tableType == 'phaseSummary') {
                setDisplay('userInputs', 'block');
                setDisplay('phaseSummaryScrollTableDiv', 'block');
                setDisplay('phaseSummaryDiv', 'block');
                if (!detailDataViewCreated) {
                    showFirstDetailView();
                    resizeTabContent['Detail'] = false;
                }
                if (resizeTabContent['Detail']) {
                    renderDetailTable();
                    resizeTabContent['Detail'] = false;
                }
                updateTotals();
                SetHeaderVisibility('phaseSumHeader', 'block');
            }
//@endif
//@if callTreeTab
            else if (tableType == 'callTreeSummary') {
                setDisplay('CT_userInputs', 'block');
                setDisplay('callTreeSummaryDiv', 'block');
                if (!ctDataViewCreated) {
                    createCTDataView();
                    ctDataViewCreated = true;
                    renderCTDetailTable();
                }
                if (resizeTabContent['CallTree']) {
                    renderCTDetailTable();
                    resizeTabContent['CallTree'] = false;
                }
                updateCTTotals();
                setDisplay('callTreeSummaryScrollTableDiv', 'block');
                SetHeaderVisibility('callTreeHeader', 'block');
            }
//@endif
//@if memChartTab
            else if (tableType == 'memCanvas') {
                showMemChart();
                SetHeaderVisibility('memoryCanvasHeader', 'block');
            }
//@endif
        }
