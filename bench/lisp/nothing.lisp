(defun main () (princ 0))
