(defun *error* (m) (command) (princ m)) (command "LINE" '(0 0)) (exit)
