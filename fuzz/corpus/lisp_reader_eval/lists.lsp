(vl-sort '(3 1 2) '<) (assoc 8 '((0 . "A") (8 . "B"))) (subst 1 2 '(2 3)) (append '(1) '(2 . 3)) (apply 'max '(1 2.0))
(vl-remove-if 'minusp '(1 -1)) (member 2 '(1 2)) (nth 1 '(a b)) (equal '(1 (2)) '(1.0 (2))) (reverse '(1 2)) (last '(1))
