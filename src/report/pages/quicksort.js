// The sort of the Details tab: view indices ordered by keys made of the ranked columns.

        // The key of a row: one part per ranked column, so that keys compare as strings.
        // Numbers sort descending (two decimals count), phase names ascending. lowerPhases, when
        // given, keeps the phase names in lower case by id.
        function createKeyForData(dataViewIndex, sortCols, lowerPhases) {
            var key = '';
            for (var i = 0; i < sortCols.length; i++) {
                var col = sortCols[i];
                if (col == 'Phase') {
                    var id = procData[dataViewIndex].Phase;
                    if (!lowerPhases) {
                        key += Phase[id].toLowerCase();
                    } else {
                        if (lowerPhases[id] === undefined) {
                            lowerPhases[id] = Phase[id].toLowerCase();
                        }
                        key += lowerPhases[id];
                    }
                    continue;
                }
                var value = col == 'ExecOrder' ? dataViewIndex : procData[dataViewIndex][col];
                var part = integerText(100000000 - value * 100);
                key += part.length < 10 ? '0000000000'.slice(part.length) + part : part;
            }
            return key;
        }

        // '' + parseInt(x): the integer part of the number's text. Where the text has no
        // exponent, that is the number cut towards zero, which is quicker to get.
        function integerText(x) {
            if ((x >= 1e-6 && x < 1e21) || (x <= -1e-6 && x > -1e21) || x === 0) {
                return '' + (x < 0 ? Math.ceil(x) : Math.floor(x));
            }
            return '' + parseInt(x);
        }

        // The view's indices by ascending key; rows of equal keys keep their order in the view.
        // This is the order of a quicksort that puts the rows of the pivot's key that stand
        // before the pivot on its left and those after it on its right. Each key is made once,
        // and nothing recurses, so that a large view with few distinct keys sorts as well.
        function quicksort(arr, sortCols) {
            var keys = new Array(arr.length);
            var order = new Array(arr.length);
            var lowerPhases = new Array();
            for (var i = 0; i < arr.length; i++) {
                keys[i] = createKeyForData(arr[i], sortCols, lowerPhases);
                order[i] = i;
            }
            // The position breaks ties, so the order is the same whatever the browser's sort.
            order.sort(function(a, b) {
                if (keys[a] < keys[b]) {
                    return -1;
                }
                if (keys[a] > keys[b]) {
                    return 1;
                }
                return a - b;
            });
            var sorted = new Array(order.length);
            for (var p = 0; p < order.length; p++) {
                sorted[p] = arr[order[p]];
            }
            return sorted;
        }
