// The sort of the Details tab: a quicksort of view indices by keys made of the ranked columns.

        // The key of a row: one part per ranked column, so that keys compare as strings.
        // Numbers sort descending (two decimals count), phase names ascending.
        function createKeyForData(dataViewIndex, sortCols) {
            var key = '';
            for (var i = 0; i < sortCols.length; i++) {
                var col = sortCols[i];
                if (col == 'Phase') {
                    key += Phase[procData[dataViewIndex].Phase].toLowerCase();
                    continue;
                }
                var value = col == 'ExecOrder' ? dataViewIndex : procData[dataViewIndex][col];
                var part = '' + parseInt(100000000 - value * 100);
                while (part.length < 10) {
                    part = '0' + part;
                }
                key += part;
            }
            return key;
        }

        // Whether the element at position x goes before the pivot: a smaller key, or an equal
        // key and a place before the pivot's, which keeps equal rows in their order.
        function compare(pivotKey, element, x, pivotIndex, sortCols) {
            var key = createKeyForData(element, sortCols);
            return key < pivotKey || (key == pivotKey && x < pivotIndex);
        }

        function quicksort(arr, sortCols) {
            if (arr.length <= 1) {
                return arr;
            }
            var pivotIndex = Math.floor(arr.length / 2);
            var pivotVal = arr.splice(pivotIndex, 1)[0];
            var pivotKey = createKeyForData(pivotVal, sortCols);
            var less = [];
            var greater = [];
            for (var x = 0; x < arr.length; x++) {
                if (compare(pivotKey, arr[x], x, pivotIndex, sortCols)) {
                    less.push(arr[x]);
                } else {
                    greater.push(arr[x]);
                }
            }
            return quicksort(less, sortCols).concat([pivotVal], quicksort(greater, sortCols));
        }
