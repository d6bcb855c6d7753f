(command "LINE" '(0 0) '(10 0) "" "LINE" '(5 -5) '(5 5) "")
(command "TRIM" (entlast) "" '(8 0) "") (command "FILLET" "R" 1) (command "FILLET" '(2 0) '(5 3)) (command "BREAK" '(1 0) '(2 0))
(command "PEDIT" (entlast) "Y" "J" "ALL" "" "") (command "AREA" '(0 0) '(5 0) '(5 5) "") (command "ARRAY" "L" "" "R" 2 3 5 5)
