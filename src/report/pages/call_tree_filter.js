
        // ---- The call tree's filter ----

        // A pattern from the user's text; text that is no valid pattern matches nothing.
        function ctPattern(text) {
            try {
                return new RegExp(text);
            } catch (e) {
                return null;
            }
        }

        // Does the node's row match the filter text in the field? A row without that name
        // matches, and so does an empty name. With regular expressions, a pattern that finds
        // '_self' also finds the names that end in '_post'.
        function copyCTDataToView(filterVal, useRegExpForFilter, node, field) {
            var id = procData[node.IDs[0]][field];
            if (id < 0) {
                return true;
            }
            var name = namesOf(field)[id];
            if (name == '') {
                return true;
            }
            if (useRegExpForFilter) {
                var pattern = ctPattern(filterVal);
                if (!pattern) {
                    return false;
                }
                return pattern.test(name) || (pattern.test('_self') && /_post$/.test(name));
            }
            var selfPattern = ctPattern(filterVal + '_self');
            return name == filterVal || (selfPattern != null && selfPattern.test(name));
        }

        // Walks the whole subtree under the children, closing it and recording its matches;
        // true when any match was found here or before in the candidate's walk.
        function checkFilterValInChildren(filterVal, useRegExpForFilter, childIDs, field) {
            for (var c = 0; c < childIDs.length; c++) {
                var child = childIDs[c];
                hideCallTreeChildren(child.children, false);
                checkFilterValInChildren(filterVal, useRegExpForFilter, child.children, field);
                if (copyCTDataToView(filterVal, useRegExpForFilter, child, field)) {
                    expandTreeToIndex.push(child.index);
                    callTreeToShow = true;
                }
            }
            return callTreeToShow;
        }

        // Narrows the view field by field: the first filled field picks among the roots, each
        // later one among the view that is left. A node stays when it or a descendant matches.
        function filterCTDataView(filterParams, useRegExpForFilter) {
            expandTreeToIndex = new Array();
            var counter = 0;
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
                if (counter == 0) {
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
                        expandTreeToIndex.push(node.index);
                        callTreeToShow = true;
                    }
                    var below = checkFilterValInChildren(value, useRegExpForFilter, node.children, field);
                    if (matches || below) {
                        CTDataView.Index.push(node.index);
                        CTDataView.Checked.push(0);
                    }
                }
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
