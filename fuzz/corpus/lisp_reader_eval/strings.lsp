(strcat (rtos 17.5 4 2) (angtos 0.5 4 4) (itoa 7) (substr "abc" 2) (strcase "aB")) (wcmatch "A1" "[A-C]#,~*x*")
(vl-string-subst "a" "b" "abc") (vl-string-translate "ab" "12" "aabb") (distof "1'-3 1/2\"" 4) (angtof "N 45d0' E" 4) (read "(a . b)")
