; Capital letters and searching with the functions of the language.
(defun work (k / i s n)
  (setq i 0 n 0)
  (while (< i k)
    (setq s (strcat "dn" (itoa i) "-" (itoa (* i 7)) " pipe"))
    (if (= (strcase s) "DN77-539 PIPE") (setq n (+ n 1000)))
    (if (vl-string-search "7-5" s) (setq n (1+ n)))
    (setq i (1+ i))
  )
  n
)
(princ (work 200000))
