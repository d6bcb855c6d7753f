(mapcar 'getvar '("CLAYER" "OSMODE" "DIMZIN" "VIEWCTR" "EXTMAX" "CDATE" "LUPREC"))
(setvar "DIMZIN" 8) (setvar "OSMODE" 0) (setvar "TEXTSIZE" 3.5) (command "SETVAR" "LTSCALE" 2.0) (rtos 12.5 2 3)
(setvar "CECOLOR" "1") (command "_.STYLE" "S1" "txt" 0 1 0 "N" "N" "N") (trans '(1 2 3) 0 1) (command "UCS" "_O" '(5 5))
(menucmd "M=$(+,1,$(getvar,luprec))") (layoutlist) (textbox '((1 . "abc") (40 . 2.5)))
