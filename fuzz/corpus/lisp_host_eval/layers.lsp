(command "_.-LAYER" "_M" "ZY-1" "_C" 3 "" "_LT" "Continuous" "" "")
(setvar "CLAYER" "0") (tblsearch "LAYER" "ZY-1") (tblnext "LAYER" T) (tblnext "LAYER")
(command "CHPROP" (ssget "X") "" "LA" "ZY-1" "C" 1 "")
