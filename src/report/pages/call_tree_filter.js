
        // ---- The call tree's filter ----

        // The test of names for a filter text, made once per text. With regular expressions the
        // text is the user's pattern, and a pattern that finds '_self' also finds the names
        // that end in '_post'. Without, the text is a name, matched as text: the name itself,
        // or a name that holds it followed by '_self'.
        var ctNameTest = {'text': null, 'regExp': false, 'test': null};
        function ctNameMatcher(filterVal, useRegExpForFilter) {
            if (ctNameTest.text === filterVal && ctNameTest.regExp === useRegExpForFilter) {
                return ctNameTest.test;
            }
            var test;
            if (useRegExpForFilter) {
                var pattern = userPattern(filterVal);
                var postToo = pattern('_self');
                test = function(name) {
                    return pattern(name) || (postToo && /_post$/.test(name));
                };
            } else {
                var selfName = filterVal + '_self';
                test = function(name) {
                    return name == filterVal || name.indexOf(selfName) != -1;
                };
            }
            ctNameTest = {'text': filterVal, 'regExp': useRegExpForFilter, 'test': test};
            return test;
        }

        // Does the node's row match the filter text in the field? A row without that name
        // matches, and so does an empty name.
        function copyCTDataToView(filterVal, useRegExpForFilter, node, field) {
            var id = procData[node.IDs[0]][field];
            if (id < 0) {
                return true;
            }
            var name = namesOf(field)[id];
            if (name == '') {
                return true;
            }
            return ctNameMatcher(filterVal, useRegExpForFilter)(name);
        }

        // Walks the whole subtree under the children, closing it and recording its matches;
        // true when any match was found here or before in the candidate's walk. The walk keeps
        // a stack of its own, so a tree of any depth is walked.
        function checkFilterValInChildren(filterVal, useRegExpForFilter, childIDs, field) {
            var stack = new Array();
            for (var c = childIDs.length - 1; c >= 0; c--) {
                stack.push(childIDs[c]);
            }
            while (stack.length > 0) {
                var child = stack.pop();
                child.show = false;
                for (var k = child.children.length - 1; k >= 0; k--) {
                    stack.push(child.children[k]);
                }
                if (copyCTDataToView(filterVal, useRegExpForFilter, child, field)) {
                    markExpandTo(child.index);
                    callTreeToShow = true;
                }
            }
            return callTreeToShow;
        }

        // Narrows the view field by field: the first field that filters picks among the roots,
        // each later one among the view that is left. A node stays when it or a descendant
        // matches. An empty field filters nothing, so a filter on a later field alone still
        // picks among the roots.
        function filterCTDataView(filterParams, useRegExpForFilter) {
            expandTreeToIndex = new Array();
            expandTreeMarks = {};
            var counter = 0;
            var filtered = false;
            for (var field in filterParams) {
                var value = filterParams[field];
                if (value == '' || field == 'unique') {
                    if (counter == 0) {
                        createCTDataView();
                    }
                    counter++;
                    continue;
                }
                var candidates = new Array();
                if (!filtered) {
                    for (var r = 0; r < callTreeArray.length; r++) {
                        candidates.push(callTreeArray[r].index);
                    }
                } else {
                    candidates = CTDataView.Index;
                }
                CTDataView.Index = new Array();
                CTDataView.Checked = new Array();
                CTDataView.AllCTChecked = false;
                for (var c = 0; c < candidates.length; c++) {
                    var node = nodeArray[candidates[c]];
                    callTreeToShow = false;
                    hideCallTreeChildren(node.children, false);
                    var matches = copyCTDataToView(value, useRegExpForFilter, node, field);
                    if (matches) {
                        markExpandTo(node.index);
                        callTreeToShow = true;
                    }
                    var below = checkFilterValInChildren(value, useRegExpForFilter, node.children, field);
                    if (matches || below) {
                        CTDataView.Index.push(node.index);
                        CTDataView.Checked.push(0);
                    }
                }
                filtered = true;
                counter++;
            }
        }

        // The Refresh button of the call tree's panel.
        function CT_userInputsAction() {
            var panel = document.getElementById('CT_FilterData');
            if (panel) {
                panel.style.display = 'none';
            }
            var arrow = document.getElementById('CT_FilterExpandCollapse');
            if (arrow) {
                arrow.innerHTML = '&#9660;';
            }
            CT_filterDataTable = false;
            modifyCTDataView(true);
            renderCTDetailTable();
            updateCTTotals();
        }
