(repeat 3 (command "POINT" (list 1 2)))
(ssget "_X" '((0 . "POINT,LINE") (-4 . "<OR") (8 . "0") (-4 . ">=") (10 1 1 0) (-4 . "OR>")))
(setq s (ssget "_C" '(0 0) '(5 5))) (ssget "WP" '((0 0) (5 0) (5 5))) (ssget "_F" '((0 0) (5 5)))
(sslength s) (ssname s 0) (ssadd (entlast) s) (ssdel (entlast) s) (ssmemb (entlast) s) (sssetfirst nil s) (ssget "_I")
