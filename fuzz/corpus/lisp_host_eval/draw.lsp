(command "_.LINE" '(0 0) '(10 0) "10,10" "@5<45" "C")
(command "CIRCLE" "0,0" 2.5 "_.TEXT" "_J" "_MC" '(1 1) 2.5 0 "DN200")
(command "PLINE" '(0 0) "W" 0.5 0.5 '(10 0) "A" '(20 10) "")
(entget (entlast))
